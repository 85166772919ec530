#include "TestSupport.h"
#include "WindowRig.h"
#include "translate/OfflineEngine.h"

#include <QApplication>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QtTest>

using namespace quillora;
using namespace quillora::test;

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
        const auto listed =
            test::awaitAnswer<QList<OfflinePair>>([&](auto done) { offline.listPairs(done); });
        if (!listed || !offline.pairFor({text, "en", "es", "en"}))
            QSKIP("apertium with apertium-eng-spa is not installed");

        // Detection, the target, both panes, monitoring off, caching on.
        WindowRig rig({{"Options", QString("0|%1|1|1|15|0|1").arg(targetRow)}});
        rig.connectivity.setOnline(false);
        FormMianDeps deps = rig.deps();
        deps.offline = &offline;
        FormMian& window = rig.open(deps);

        box(window, "sourceBox")->setPlainText(text);
        QVERIFY(translateNow(window));
        QCOMPARE(rig.notices.size(), notices);
        QCOMPARE(box(window, "resultBox")->toPlainText().contains("playa"), notices == 0);
        QCOMPARE(window.statusMessage(), notices ? "" : "Translated offline by Apertium (eng-spa).");
    }
};

QTEST_MAIN(TestOfflineWindow)
#include "test_offline_window.moc"
