#include "net/MakerLists.h"
#include "net/WebLink.h"

#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

using Records = QList<SiteRecord>;

class MakerListsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void updateList_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("fields"); // version/number/download/details
        QTest::addColumn<QByteArray>("sha256Hex");
        const QByteArray digest = QByteArray(32, '\xab').toHex();
        QTest::newRow("four fields") << u"2.1.92|3|http://d/q|Updates:\r\nmore"_s
                                     << u"2.1.92/3/http://d/q/Updates:\r\nmore"_s << QByteArray();
        QTest::newRow("digest, blanks and upper case")
            << u"2.2.0|12| http://d/q |Updates| "_s + QString::fromLatin1(digest.toUpper()) + u"\n"_s
            << u"2.2.0/12/http://d/q/Updates"_s << digest;
        QTest::newRow("short digest")
            << u"2.2.0|1|u|Updates|abcd"_s << u"2.2.0/1/u/Updates"_s << QByteArray();
        QTest::newRow("digest not hex")
            << u"2.2.0|1|u|Updates|"_s + QString(64, u'g') << u"2.2.0/1/u/Updates"_s << QByteArray();
        QTest::newRow("number not a number") << u"v|x|u|d"_s << u"v/0/u/d"_s << QByteArray();
        QTest::newRow("version only") << u" 2.1.92"_s << u" 2.1.92/0//"_s << QByteArray();
    }
    void updateList()
    {
        QFETCH(QString, text);
        QFETCH(QString, fields);
        const UpdateList list = parseUpdateList(text);
        QCOMPARE(
            QStringList({list.version, QString::number(list.number), list.download, list.details}).join(u'/'),
            fields);
        QTEST(list.sha256.toHex(), "sha256Hex");
    }

    void sitesList_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<Records>("records");
        QTest::newRow("two") << u"News|http://n<Maps|http://m"_s
                             << Records{{u"News"_s, u"http://n"_s}, {u"Maps"_s, u"http://m"_s}};
        QTest::newRow("trailing separator and line break")
            << u"News|http://n\r\n<Maps|http://m<\r\n"_s
            << Records{{u"News"_s, u"http://n"_s}, {u"Maps"_s, u"http://m"_s}};
        QTest::newRow("no address") << u"Just a caption"_s << Records{{u"Just a caption"_s, {}}};
        QTest::newRow("extra fields") << u"A|http://a|ignored"_s << Records{{u"A"_s, u"http://a"_s}};
        QTest::newRow("empty") << QString() << Records{};
        Records hundred;
        for (int i = 0; i < 100; ++i)
            hundred.append({u"S"_s, u"http://s"_s});
        QTest::newRow("16 MiB keeps a hundred") << u"S|http://s<"_s.repeated((16 << 20) / 11) << hundred;
    }
    void sitesList()
    {
        QFETCH(QString, text);
        QTEST(parseSitesList(text), "records");
    }

    void pageList_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("pages");
        QTest::newRow("two") << u"http://a<|http://b"_s << QStringList{u"http://a"_s, u"http://b"_s};
        QTest::newRow("trailing separator keeps an empty place")
            << u"http://a<|http://b<|\r\n"_s << QStringList{u"http://a"_s, u"http://b"_s, QString()};
        QTest::newRow("a lone < is part of the address")
            << u"http://a?x<y"_s << QStringList{u"http://a?x<y"_s};
        QTest::newRow("nothing") << QString() << QStringList{};
        QTest::newRow("a hundred kept") << u"p<|"_s.repeated(150) << QStringList(100, u"p"_s);
    }
    void pageList()
    {
        QFETCH(QString, text);
        QTEST(splitPageList(text), "pages");
    }

    // Which addresses go to the browser, and which update lists may replace the program.
    void webLinks_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("web");
        QTest::addColumn<bool>("trusted");
        QTest::newRow("https") << u"https://maker.example/Update.txt"_s << true << true;
        QTest::newRow("plain http") << u"http://maker.example/Update.txt"_s << true << false;
        QTest::newRow("http on loopback") << u"HTTP://[::1]:8/Update.txt"_s << true << true;
        QTest::newRow("file") << u"file:///etc/passwd"_s << false << false;
        QTest::newRow("custom scheme") << u"steam://run/1"_s << false << false;
        QTest::newRow("no host") << u"http:///x"_s << false << false;
    }
    void webLinks()
    {
        QFETCH(QString, address);
        QStringList opened;
        QTEST(
            openWebAddress(QUrl(address), [&opened](const QUrl& u) { return opened << u.toString(), true; }),
            "web");
        QCOMPARE(opened.size(), isWebAddress(QUrl(address)) ? 1 : 0);
        QTEST(isTrustedUpdateSource(QUrl(address)), "trusted");
    }
};

QTEST_APPLESS_MAIN(MakerListsTest)
#include "test_maker_lists.moc"
