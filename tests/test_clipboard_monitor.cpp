#include "desktop/ModmonClip.h"

#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>
#include <QUrl>

using namespace quillora;

// The offscreen clipboard is in-process and reports at once; the test's writes stand for another
// program's copies.
class ClipboardMonitorTest : public QObject
{
    Q_OBJECT
    QClipboard* clipboard() const { return QGuiApplication::clipboard(); }

private Q_SLOTS:
    void switchingIsIdempotentAndTakesCurrentText()
    {
        clipboard()->setText("already there");
        ClipboardMonitor monitor(clipboard());
        QSignalSpy copied(&monitor, &ClipboardMonitor::textCopied);
        monitor.setMonitoring(false);
        monitor.setMonitoring(true);
        monitor.setMonitoring(true);
        clipboard()->setText("next");
        monitor.setMonitoring(false);
        monitor.setMonitoring(false);
        clipboard()->setText("while off");
        QCOMPARE(copied, (QList<QVariantList>{{"already there"}, {"next"}}));
    }

    // Only text another program copies counts: not an empty text, a picture, files, a secret, nor this
    // program's own copy, even when a clear is reported between the mark and the copy.
    void onlyOtherProgramsTextCounts()
    {
        ClipboardMonitor monitor(clipboard());
        monitor.setMonitoring(true);
        QSignalSpy copied(&monitor, &ClipboardMonitor::textCopied);
        clipboard()->setText(QString());
        clipboard()->setImage(QImage(4, 4, QImage::Format_RGB32));
        auto* files = new QMimeData;
        files->setUrls({QUrl::fromLocalFile("/tmp/a.txt")});
        files->setText("/tmp/a.txt");
        clipboard()->setMimeData(files);
        auto* secret = new QMimeData;
        secret->setText("hunter2");
        secret->setData(ClipboardOffer::kSecretHintType, "secret");
        clipboard()->setMimeData(secret);
        monitor.markOwnCopy();
        clipboard()->clear();
        clipboard()->setText("bonjour");
        clipboard()->setText("from elsewhere");
        QCOMPARE(copied, QList<QVariantList>{{"from elsewhere"}});
    }
};

QTEST_MAIN(ClipboardMonitorTest)
#include "test_clipboard_monitor.moc"
