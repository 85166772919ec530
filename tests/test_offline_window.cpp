#include "TestSupport.h"
#include "WindowRig.h"
#include "translate/OfflineEngine.h"

#include <QApplication>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QtTest>

using namespace quillora;
using namespace quillora::test;

// The window without a connection translates through an installed pair and says so; where no pair
// covers the text it gives the connection's notice.
class TestOfflineWindow : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void translatesOfflineWhereAPairCovers()
    {
        const QString text = "The weather is nice today and I want to go to the beach.";
        OfflineEngine offline;
        const auto listed =
            test::awaitAnswer<QList<OfflinePair>>([&](auto done) { offline.listPairs(done); });
        if (!listed || !offline.pairFor({text, "en", "es", "en"}))
            QSKIP("apertium with apertium-eng-spa is not installed");

        // Detection, target Spanish, both panes, monitoring off, caching on.
        WindowRig rig({{"Options", "0|49|1|1|15|0|1"}});
        rig.connectivity.setOnline(false);
        FormMianDeps deps = rig.deps();
        deps.offline = &offline;
        FormMian& window = rig.open(deps);
        box(window, "sourceBox")->setPlainText(text);
        QVERIFY(translateNow(window));
        QVERIFY(rig.notices.isEmpty() && box(window, "resultBox")->toPlainText().contains("playa"));
        QCOMPARE(window.statusMessage(), "Translated offline by Apertium (eng-spa).");
        // To Thai no pair covers it: the notice, and the status line says nothing more.
        named<QComboBox>(window, "Combo1")->setCurrentIndex(52);
        QVERIFY(translateNow(window));
        QVERIFY(rig.notices.size() == 1 && window.statusMessage().isEmpty());
    }
};

QTEST_MAIN(TestOfflineWindow)
#include "test_offline_window.moc"
