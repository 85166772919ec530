#include "TestSupport.h"
#include "desktop/WebPageBar.h"

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

    // xdg-open runs on its own: what it says when it fails is the reason; where it is missing, the
    // fallback is asked.
    void desktopOpenerSaysWhy()
    {
        QTemporaryDir bin;
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", bin.path().toLocal8Bit());
        QStringList reasons;
        QList<QUrl> asked;
        for (const char* script : {"exit 0", "echo tried >&2; echo \"no browser for $1\" >&2; exit 3", ""}) {
            QFile::remove(bin.filePath(u"xdg-open"_s));
            if (*script)
                QVERIFY(
                    test::writeFile(bin.filePath(u"xdg-open"_s), QByteArray("#!/bin/sh\n") + script) &&
                    QFile::setPermissions(bin.filePath(u"xdg-open"_s), QFile::ReadOwner | QFile::ExeOwner));
            openWithDesktop(
                u"http://a.example/b c"_s, [&asked](const QUrl& url) { return asked << url, false; },
                [&reasons](const QString& reason) { reasons << reason; });
            QTRY_VERIFY(qApp->findChildren<QProcess*>().isEmpty());
        }
        qputenv("PATH", path);
        QCOMPARE(reasons.size(), 2);
        QCOMPARE(reasons.constFirst(), u"no browser for http://a.example/b c"_s);
        QCOMPARE(asked, QList<QUrl>{QUrl(u"http://a.example/b%20c"_s)});
    }
};

QTEST_MAIN(TestWebPageBar)
#include "test_web_page_bar.moc"
