#include "TestSupport.h"
#include "desktop/WebPageBar.h"
#include "parts/Parts.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>

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

    // The desktop's opener runs as a process of its own: when it fails, what it said is the reason;
    // where it is missing, the fallback is asked.
    void desktopOpenerSaysWhy()
    {
        QTemporaryDir bin;
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", bin.path().toLocal8Bit());
        const QString xdgOpen = bin.filePath(u"xdg-open"_s);
        QStringList reasons;
        QList<QUrl> fallbacks;
        for (const QByteArray& script :
             {QByteArray("exit 0"), QByteArray("echo \"no method for '$1'\" >&2; exit 3"), QByteArray()}) {
            QFile::remove(xdgOpen);
            if (!script.isEmpty()) {
                QVERIFY(test::writeFile(xdgOpen, "#!/bin/sh\n" + script + '\n'));
                QFile::setPermissions(xdgOpen, QFile::ReadOwner | QFile::ExeOwner);
            }
            openWithDesktop(
                u"http://example.org/a b"_s,
                [&fallbacks](const QUrl& url) { return fallbacks << url, false; },
                [&reasons](const QString& reason) { reasons << reason; });
            QTRY_VERIFY(qApp->findChildren<QProcess*>().isEmpty());
        }
        qputenv("PATH", path);
        QCOMPARE(reasons.size(), 2);
        QCOMPARE(reasons.constFirst(), u"no method for 'http://example.org/a b'"_s);
        QCOMPARE(fallbacks, QList<QUrl>{QUrl(u"http://example.org/a%20b"_s)});
        QVERIFY(!reasons.constLast().isEmpty());
    }
};

int testWebPageBar(int argc, char** argv)
{
    TestWebPageBar test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_web_page_bar.moc"
