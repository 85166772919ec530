#include "app/FormMian.h"
#include "app/Settings.h"
#include "net/Connectivity.h"
#include "translate/OfflineEngine.h"

#include <QApplication>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QtTest>

using namespace quillora;

// The window without a connection, on the real installed pairs.
class TestOfflineWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void translatesOfflineWhereAPairCovers_data()
    {
        QTest::addColumn<int>("targetRow");
        QTest::addColumn<int>("notices");
        QTest::newRow("English to Spanish") << 49 << 0;
        QTest::newRow("English to Thai, the offline notice") << 52 << 1;
    }
    void translatesOfflineWhereAPairCovers()
    {
        QFETCH(int, targetRow);
        QFETCH(int, notices);
        const QString text = "The weather is nice today and I want to go to the beach.";
        OfflineEngine offline;
        if (!offline.pairFor({text, "en", "es", "en"}))
            QSKIP("apertium with apertium-eng-spa is not installed");

        QTemporaryDir dir;
        Settings settings(dir.filePath("Quillora.conf"));
        settings.setOptions({0, targetRow, 1, 1, 15, 0, 1}); // detection
        FixedConnectivity connectivity(false);
        QList<NoticeRequest> shown;
        FormMianDeps deps;
        deps.settings = &settings;
        deps.connectivity = &connectivity;
        deps.offline = &offline;
        deps.registerHotKey = false;
        deps.notice = [&shown](QWidget*, const NoticeRequest& request) {
            return shown << request, QMessageBox::Ok;
        };
        FormMian window(deps);

        window.sourceBox()->setPlainText(text);
        window.jcbuttonClick(0);
        QCOMPARE(shown.size(), notices);
        QCOMPARE(window.resultBox()->toPlainText().contains("playa"), notices == 0);
        QCOMPARE(window.statusMessage(), notices ? "" : "Translated offline by Apertium (eng-spa).");
    }
};

QTEST_MAIN(TestOfflineWindow)
#include "test_offline_window.moc"
