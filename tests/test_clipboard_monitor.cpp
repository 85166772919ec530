#include "desktop/ModmonClip.h"

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

using namespace quillora;

// The offscreen clipboard is in-process and reports synchronously; writes by the test stand for
// another program's copies.
class ClipboardMonitorTest : public QObject
{
    Q_OBJECT

private:
    QClipboard* clipboard() const { return QGuiApplication::clipboard(); }

private Q_SLOTS:
    void init() { clipboard()->clear(); }

    void switchingOnTakesCurrentText()
    {
        clipboard()->setText(QStringLiteral("already there"));
        ClipboardMonitor monitor(clipboard());
        QSignalSpy spy(&monitor, &ClipboardMonitor::textCopied);
        QVERIFY(!monitor.monitoring());
        monitor.setMonitoring(true);
        QVERIFY(monitor.monitoring());
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("already there"));
        // Switching on again neither connects twice nor re-reads.
        monitor.setMonitoring(true);
        QCOMPARE(spy.size(), 1);
        clipboard()->setText(QStringLiteral("next"));
        QCOMPARE(spy.size(), 2);
        QCOMPARE(spy.at(1).at(0).toString(), QStringLiteral("next"));
    }

    void switchingOffStopsNotices()
    {
        ClipboardMonitor monitor(clipboard());
        QSignalSpy spy(&monitor, &ClipboardMonitor::textCopied);
        monitor.setMonitoring(false);
        clipboard()->setText(QStringLiteral("never on"));
        monitor.setMonitoring(true);
        monitor.setMonitoring(false);
        monitor.setMonitoring(false);
        clipboard()->setText(QStringLiteral("off again"));
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("never on"));
        monitor.setMonitoring(true);
        clipboard()->setText(QStringLiteral("back on"));
        QCOMPARE(spy.size(), 3);
        QCOMPARE(spy.last().at(0).toString(), QStringLiteral("back on"));
    }

    void emptyPicturesAndFilesChangeNothing()
    {
        ClipboardMonitor monitor(clipboard());
        monitor.setMonitoring(true);
        QSignalSpy spy(&monitor, &ClipboardMonitor::textCopied);
        clipboard()->setText(QString());
        clipboard()->clear();
        QImage image(4, 4, QImage::Format_RGB32);
        image.fill(Qt::red);
        clipboard()->setImage(image);
        auto* files = new QMimeData;
        files->setUrls({QUrl::fromLocalFile(QStringLiteral("/tmp/a.txt"))});
        files->setText(QStringLiteral("/tmp/a.txt"));
        clipboard()->setMimeData(files);
        QCOMPARE(spy.size(), 0);
    }

    void ownCopySwallowsExactlyOneNotice()
    {
        ClipboardMonitor monitor(clipboard());
        monitor.setMonitoring(true);
        QSignalSpy spy(&monitor, &ClipboardMonitor::textCopied);
        // The way Copy does it: clear, mark, copy.
        clipboard()->clear();
        monitor.markOwnCopy();
        QVERIFY(monitor.ownCopy());
        clipboard()->setText(QStringLiteral("bonjour"));
        QVERIFY(!monitor.ownCopy());
        QCOMPARE(spy.size(), 0);
        clipboard()->setText(QStringLiteral("from elsewhere"));
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("from elsewhere"));
    }

    void clearNoticeAfterTheMarkKeepsTheGuard()
    {
        ClipboardMonitor monitor(clipboard());
        monitor.setMonitoring(true);
        QSignalSpy spy(&monitor, &ClipboardMonitor::textCopied);
        monitor.markOwnCopy();
        clipboard()->clear();
        QVERIFY(monitor.ownCopy());
        clipboard()->setText(QStringLiteral("own result"));
        QCOMPARE(spy.size(), 0);
        QVERIFY(!monitor.ownCopy());
    }

    void guardWhileOffIsUsedWhenSwitchedOn()
    {
        clipboard()->setText(QStringLiteral("stale"));
        ClipboardMonitor monitor(clipboard());
        QSignalSpy spy(&monitor, &ClipboardMonitor::textCopied);
        monitor.markOwnCopy();
        monitor.setMonitoring(true);
        QCOMPARE(spy.size(), 0);
        QVERIFY(!monitor.ownCopy());
        clipboard()->setText(QStringLiteral("fresh"));
        QCOMPARE(spy.size(), 1);
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    ClipboardMonitorTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_clipboard_monitor.moc"
