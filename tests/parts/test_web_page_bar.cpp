#include "desktop/WebPageBar.h"
#include "parts/Parts.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestWebPageBar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The typed address goes out trimmed; the list remembers the last ten as typed.
    void opensAndRemembersTen()
    {
        QWidget parent;
        QStringList opened;
        WebPageBar bar(
            &parent, 2, 435, [](const QString& typed) { return u"translated:"_s + typed; },
            [&opened](const QString& address, const OpenFailed&) { opened << address; });
        auto* address = parent.findChild<QComboBox*>(u"ucComText"_s);
        auto* go = parent.findChild<QAbstractButton*>(u"jcbutton1"_s);
        for (int i = 0; i <= 10; ++i) {
            bar.setAddressText(i ? u"site%1.example"_s.arg(i) : u"  example.org/a b?x=1 "_s);
            go->click();
        }
        QCOMPARE(opened.constFirst(), u"translated:example.org/a b?x=1"_s);
        QCOMPARE(opened.size(), 11);
        QCOMPARE(address->count(), 10);
        QCOMPARE(address->itemText(0), u"site1.example"_s);
        QCOMPARE(address->currentText(), u"site10.example"_s);
    }
};

int testWebPageBar(int argc, char** argv)
{
    TestWebPageBar test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_web_page_bar.moc"
