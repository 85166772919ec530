#include "app/AccessKeys.h"

#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestAccessKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void assign_data()
    {
        QTest::addColumn<QStringList>("captions");
        QTest::addColumn<QStringList>("keyed");
        QTest::addRow("taken letters skipped, any case")
            << QStringList{u"save"_s, u"Settings"_s, u"Search"_s}
            << QStringList{u"&save"_s, u"S&ettings"_s, u"Se&arch"_s};
        QTest::addRow("own marks first")
            << QStringList{u"Export"_s, u"&Edit"_s} << QStringList{u"E&xport"_s, u"&Edit"_s};
        QTest::addRow("a second mark on a taken letter moves")
            << QStringList{u"&File"_s, u"&Find"_s} << QStringList{u"&File"_s, u"F&ind"_s};
        QTest::addRow("word start before earlier letter")
            << QStringList{u"Auto Run"_s, u"Auto Copy"_s} << QStringList{u"&Auto Run"_s, u"Auto &Copy"_s};
        QTest::addRow("letter before digit") << QStringList{u"Office XP"_s, u"Office 2003"_s}
                                             << QStringList{u"&Office XP"_s, u"O&ffice 2003"_s};
        QTest::addRow("Slovak accents type directly") << QStringList{u"Súbor"_s, u"Skryť"_s, u"Šírka"_s}
                                                      << QStringList{u"&Súbor"_s, u"S&kryť"_s, u"&Šírka"_s};
        QTest::addRow("Chinese and Thai keep their marks, get none")
            << QStringList{u"文件(&F)"_s, u"帮助"_s, u"Google 翻译主页"_s, u"&翻译"_s, u"แปล"_s}
            << QStringList{u"文件(&F)"_s, u"帮助"_s, u"&Google 翻译主页"_s, u"翻译"_s, u"แปล"_s};
        QTest::addRow("ampersands stay text")
            << QStringList{AccessKeys::literal(u"& Co && Sons"_s)} << QStringList{u"&& &Co &&&& Sons"_s};
        QTest::addRow("fewest letters first, until none is left")
            << QStringList{u"ab"_s, u"ba"_s, u"a"_s} << QStringList{u"a&b"_s, u"ba"_s, u"&a"_s};
    }

    void assign()
    {
        QFETCH(QStringList, captions);
        QTEST(AccessKeys::assign(captions), "keyed");
    }
};

QTEST_APPLESS_MAIN(TestAccessKeys)
#include "test_access_keys.moc"
