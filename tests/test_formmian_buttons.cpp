#include "FormMianRig.h"
#include "app/StringTable.h"
#include "desktop/ModmonClip.h"
#include "translate/LanguageCatalogue.h"
#include "translate/WebPageAddress.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using namespace quillora;
using quillora::test::FormMianRig;
using quillora::test::StandinService;

namespace
{

// Options: detection, target French, both panes, monitoring off, caching on.
const QHash<QString, QString> kFrench{{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|0|1")}};
constexpr int kTranslate = 0, kSwap = 1, kBack = 2, kCopy = 3, kPaste = 4, kClear = 5;

QString dictionaryLayout(const QString& text, const QString& target)
{
    QString out;
    for (const auto& entry : StandinService::dictionary(text, target)) {
        out += entry.first + QStringLiteral(":\n");
        for (int j = 0; j < entry.second.size(); ++j)
            out += QString::number(j + 1) + QStringLiteral(". ") + entry.second.at(j) + QLatin1Char('\n');
    }
    return out;
}

QByteArray lastFormBody(StandinService& service)
{
    for (auto it = service.requests().crbegin(); it != service.requests().crend(); ++it) {
        if (it->method == "POST" && it->path() == QLatin1String("/"))
            return it->body;
    }
    return {};
}

} // namespace

class TestFormMianButtons : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void translateFillsTheBoxes();
    void translateSendsTheFormBody();
    void blankSourceSendsNothing();
    void offlineShowsTheNotice();
    void speakersFollowTheTextLength();
    void swapExchangesTheLanguages();
    void backWalksTheRing();
    void backWithoutCachingShowsEmptySlots();
    void copyTakesTheUntrimmedText();
    void copyOfBlankLeavesTheClipboard();
    void pasteAndClear();
    void failureGoesToTheStatusLine();
    void escapeCancelsAndInputIsHeld();
    void copiedTextIsTranslatedNewestFirst();
    void autoCopyDoesNotFeedTheMonitor();
    void webPageTranslation();
    void closeHidesWhileExitQuits();
    void closeWithoutTrayStaysMinimised();
    void speechFailureGoesToTheStatusLine();
};

void TestFormMianButtons::translateFillsTheBoxes()
{
    FormMianRig rig(kFrench, true);
    FormMian& w = rig.window();
    QSignalSpy finished(&w, &FormMian::translationFinished);
    w.sourceBox()->setPlainText(QStringLiteral("hello world"));
    w.jcbuttonClick(kTranslate);

    const QString translation =
        StandinService::translate(QStringLiteral("hello world"), QStringLiteral("fr"));
    QCOMPARE(translation, QStringLiteral("bonjour monde"));
    QCOMPARE(w.resultBox()->toPlainText(), translation);
    QCOMPARE(w.phoneticBox()->toPlainText(), StandinService::romanize(translation));
    QCOMPARE(w.dictionaryBox()->toPlainText(),
             dictionaryLayout(QStringLiteral("hello world"), QStringLiteral("fr")));
    QVERIFY(w.responseBox()->toPlainText().contains(QStringLiteral("result_box")));
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello world"));
    QCOMPARE(finished.count(), 1);
    QVERIFY(!w.isTranslating());
    QVERIFY(w.statusMessage().isEmpty());

    // The Translate menu item runs the same action.
    w.sourceBox()->setPlainText(QStringLiteral("world"));
    w.dispatch(QStringLiteral("menuF0"));
    QCOMPARE(w.resultBox()->toPlainText(), QStringLiteral("monde"));
    QCOMPARE(rig.service().count("POST", QStringLiteral("/")), 2);
}

void TestFormMianButtons::translateSendsTheFormBody()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("17|19|1|1|22|0|1")}}, true);
    FormMian& w = rig.window();
    const QString text = QStringLiteral("  a&b c+d 100% é\nzwei=2 ");
    w.sourceBox()->setPlainText(text);
    w.jcbuttonClick(kTranslate);

    const QByteArray expected = QByteArrayLiteral("prev=hp&hl=de&ie=UTF-8&js=y&text=") +
                                QStringLiteral("  a%26b c+d 100% é\nzwei=2 ").toUtf8() +
                                QByteArrayLiteral("&file=&sl=en&tl=fr");
    QCOMPARE(lastFormBody(rig.service()), expected);
    const auto& request = rig.service().requests().constLast();
    QVERIFY(request.header("Content-Type").startsWith("application/x-www-form-urlencoded"));
    // The source box keeps the text as typed.
    QCOMPARE(w.sourceBox()->toPlainText(), text);
}

void TestFormMianButtons::blankSourceSendsNothing()
{
    FormMianRig rig(kFrench, true);
    FormMian& w = rig.window();
    QSignalSpy finished(&w, &FormMian::translationFinished);
    w.sourceBox()->setPlainText(QStringLiteral("   "));
    w.resultBox()->setPlainText(QStringLiteral("old"));
    w.phoneticBox()->setPlainText(QStringLiteral("old"));
    w.dictionaryBox()->setPlainText(QStringLiteral("old"));
    w.jcbuttonClick(kTranslate);
    QVERIFY(rig.service().requests().isEmpty());
    QVERIFY(w.resultBox()->toPlainText().isEmpty());
    QVERIFY(w.phoneticBox()->toPlainText().isEmpty());
    QVERIFY(w.dictionaryBox()->toPlainText().isEmpty());
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("   "));
    QCOMPARE(finished.count(), 0);
}

void TestFormMianButtons::offlineShowsTheNotice()
{
    FormMianRig rig(kFrench, true);
    FormMian& w = rig.window();
    rig.connectivity.setOnline(false);
    w.sourceBox()->setPlainText(QStringLiteral("hello"));
    w.resultBox()->setPlainText(QStringLiteral("kept"));
    w.jcbuttonClick(kTranslate);

    QCOMPARE(rig.notices.size(), 1);
    const NoticeRequest& notice = rig.notices.constFirst();
    QCOMPARE(notice.text, QStringLiteral("Is not connected to the Internet."));
    QCOMPARE(notice.title, QStringLiteral("Notice"));
    QCOMPARE(notice.icon, QMessageBox::Warning);
    QCOMPARE(notice.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
    QVERIFY(notice.owned);
    QVERIFY(rig.noticeHadOwner.constFirst());
    QVERIFY(rig.service().requests().isEmpty());
    QCOMPARE(w.resultBox()->toPlainText(), QStringLiteral("kept"));

    // A copied text offline: the ownerless OK/Cancel notice, the text still lands in the source box.
    w.translateCopiedText(QStringLiteral("copied"));
    QCOMPARE(rig.notices.size(), 2);
    QCOMPARE(rig.notices.at(1).icon, QMessageBox::Information);
    QCOMPARE(rig.notices.at(1).buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QVERIFY(!rig.notices.at(1).owned);
    QCOMPARE(rig.notices.at(1).text, StringTable::text(1102));
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("copied"));
    QVERIFY(rig.service().requests().isEmpty());
}

void TestFormMianButtons::speakersFollowTheTextLength()
{
    // Source English, target French: both languages speak.
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("17|19|1|1|15|0|1")}}, true);
    FormMian& w = rig.window();
    w.sourceBox()->setPlainText(QString(100, QLatin1Char('a')));
    w.jcbuttonClick(kTranslate);
    QVERIFY(!w.speakerButton(0)->isHidden());
    QVERIFY(!w.speakerButton(1)->isHidden());
    QCOMPARE(w.speakerButton(0)->size(), QSize(18, 18));

    w.sourceBox()->setPlainText(QString(101, QLatin1Char('a')));
    w.jcbuttonClick(kTranslate);
    QVERIFY(w.speakerButton(0)->isHidden());
    QVERIFY(w.speakerButton(1)->isHidden());

    // Detection has no speech for the source; Thai as target none for the translation.
    w.combo2()->setCurrentIndex(0);
    w.combo1()->setCurrentIndex(52);
    w.sourceBox()->setPlainText(QStringLiteral("hello"));
    w.jcbuttonClick(kTranslate);
    QVERIFY(w.speakerButton(0)->isHidden());
    QVERIFY(w.speakerButton(1)->isHidden());
}

void TestFormMianButtons::swapExchangesTheLanguages()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("17|19|1|1|15|0|1")}}, true);
    FormMian& w = rig.window();
    QVERIFY(w.jcbutton(kSwap)->isEnabled());
    w.sourceBox()->setPlainText(QStringLiteral("hello"));
    w.jcbuttonClick(kSwap);
    QCOMPARE(w.combo1()->currentIndex(), 15);
    QCOMPARE(w.combo2()->currentIndex(), 21);
    QVERIFY(lastFormBody(rig.service()).endsWith("&sl=fr&tl=en"));
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello"));
    QCOMPARE(w.resultBox()->toPlainText(), QStringLiteral("HELLO"));

    // With detection chosen Swap is disabled and pressing it does nothing.
    w.combo2()->setCurrentIndex(1);
    QVERIFY(!w.jcbutton(kSwap)->isEnabled());
    const int sent = rig.service().requests().size();
    w.jcbuttonClick(kSwap);
    QCOMPARE(rig.service().requests().size(), sent);
    QCOMPARE(w.combo1()->currentIndex(), 15);
}

void TestFormMianButtons::backWalksTheRing()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("17|19|1|1|15|0|1")}}, true);
    FormMian& w = rig.window();
    const QStringList texts{QStringLiteral("hello"), QStringLiteral("world"), QString(120, QLatin1Char('x')),
                            QStringLiteral("thank you")};
    const QList<int> targets{19, 22, 19, 49};
    for (int i = 0; i < texts.size(); ++i) {
        w.combo1()->setCurrentIndex(targets.at(i));
        w.sourceBox()->setPlainText(texts.at(i));
        w.jcbuttonClick(kTranslate);
    }
    // Four translations: the fourth overwrote slot 0, so Back shows the third, then the second.
    w.jcbuttonClick(kBack);
    QCOMPARE(w.sourceBox()->toPlainText(), texts.at(2));
    QCOMPARE(w.resultBox()->toPlainText(), StandinService::translate(texts.at(2), QStringLiteral("fr")));
    QCOMPARE(w.combo1()->currentIndex(), 19);
    QCOMPARE(w.combo2()->currentIndex(), 17);
    QVERIFY(w.speakerButton(1)->isHidden()); // 120 characters: no speech
    QVERIFY(w.speakerButton(0)->isHidden());

    w.jcbuttonClick(kBack);
    QCOMPARE(w.sourceBox()->toPlainText(), texts.at(1));
    QCOMPARE(w.resultBox()->toPlainText(), StandinService::translate(texts.at(1), QStringLiteral("de")));
    QCOMPARE(w.phoneticBox()->toPlainText(),
             StandinService::romanize(StandinService::translate(texts.at(1), QStringLiteral("de"))));
    QCOMPARE(w.combo1()->currentIndex(), 22);
    QVERIFY(!w.speakerButton(0)->isHidden());
    QVERIFY(!w.speakerButton(1)->isHidden());

    w.jcbuttonClick(kBack);
    QCOMPARE(w.sourceBox()->toPlainText(), texts.at(3));
    QCOMPARE(w.combo1()->currentIndex(), 49);
    // The pickers' codes follow the restored rows.
    w.jcbuttonClick(kTranslate);
    QVERIFY(lastFormBody(rig.service()).endsWith("&sl=en&tl=es"));
}

void TestFormMianButtons::backWithoutCachingShowsEmptySlots()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|0|0")}}, true);
    FormMian& w = rig.window();
    w.sourceBox()->setPlainText(QStringLiteral("hello"));
    w.jcbuttonClick(kTranslate);
    QVERIFY(!w.resultBox()->toPlainText().isEmpty());
    w.jcbuttonClick(kBack);
    QVERIFY(w.sourceBox()->toPlainText().isEmpty());
    QVERIFY(w.resultBox()->toPlainText().isEmpty());
    QVERIFY(w.speakerButton(0)->isHidden());
}

void TestFormMianButtons::copyTakesTheUntrimmedText()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|1|1")}});
    FormMian& w = rig.window();
    QVERIFY(w.clipboardMonitor()->monitoring());
    QSignalSpy copied(w.clipboardMonitor(), &ClipboardMonitor::textCopied);
    w.resultBox()->setPlainText(QStringLiteral("   leading and trailing  "));
    w.jcbuttonClick(kCopy);
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("   leading and trailing  "));
    // The program's own copy is not taken back as a new source.
    QTest::qWait(50);
    QCOMPARE(copied.count(), 0);
    QVERIFY(w.sourceBox()->toPlainText().isEmpty());
}

void TestFormMianButtons::copyOfBlankLeavesTheClipboard()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|0|1")}});
    FormMian& w = rig.window();
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    for (const QString& blank : {QString(), QStringLiteral("    ")}) {
        w.resultBox()->setPlainText(blank);
        w.jcbuttonClick(kCopy);
        QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
        QVERIFY(!w.clipboardMonitor()->ownCopy());
    }
}

void TestFormMianButtons::pasteAndClear()
{
    FormMianRig rig(kFrench, true);
    FormMian& w = rig.window();
    for (const QString& text : {QStringLiteral("world"), QStringLiteral("hello")}) {
        w.sourceBox()->setPlainText(text);
        w.jcbuttonClick(kTranslate);
    }
    QVERIFY(!w.speakerButton(0)->isHidden());

    QGuiApplication::clipboard()->setText(QStringLiteral(" pasted 中文"));
    w.sourceBox()->moveCursor(QTextCursor::End);
    w.jcbuttonClick(kPaste);
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello pasted 中文"));
    QCOMPARE(rig.service().count("POST", QStringLiteral("/")), 2);

    w.jcbuttonClick(kClear);
    for (QPlainTextEdit* box : {w.sourceBox(), w.resultBox(), w.phoneticBox(), w.dictionaryBox()})
        QVERIFY(box->toPlainText().isEmpty());
    QVERIFY(w.speakerButton(0)->isHidden());
    QVERIFY(w.speakerButton(1)->isHidden());
    // The ring is untouched: Back still has the earlier translation.
    w.jcbuttonClick(kBack);
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("world"));
    QCOMPARE(w.resultBox()->toPlainText(), QStringLiteral("monde"));
    QVERIFY(!w.speakerButton(0)->isHidden());

    // Indexes outside 0-5 do nothing.
    w.jcbuttonClick(6);
    w.jcbuttonClick(-1);
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("world"));
}

void TestFormMianButtons::failureGoesToTheStatusLine()
{
    FormMianRig rig(kFrench, true);
    FormMian& w = rig.window();
    rig.service().setFormMode(StandinService::FormMode::Refused);
    w.sourceBox()->setPlainText(QStringLiteral("hello"));
    w.resultBox()->setPlainText(QStringLiteral("old"));
    w.phoneticBox()->setPlainText(QStringLiteral("old"));
    w.dictionaryBox()->setPlainText(QStringLiteral("old"));
    w.jcbuttonClick(kTranslate);
    QCOMPARE(w.statusMessage(), StringTable::text(1000 + MsgServiceRefused));
    QVERIFY(w.resultBox()->toPlainText().isEmpty());
    QVERIFY(w.phoneticBox()->toPlainText().isEmpty());
    QVERIFY(w.dictionaryBox()->toPlainText().isEmpty());
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello"));
    QVERIFY(rig.notices.isEmpty());

    // In Slovak the same failure speaks Slovak.
    w.dispatch(QStringLiteral("menuS213"));
    w.jcbuttonClick(kTranslate);
    QCOMPARE(w.statusMessage(), StringTable::text(6000 + MsgServiceRefused));

    // The next good answer clears the line.
    rig.service().setFormMode(StandinService::FormMode::Legacy);
    w.jcbuttonClick(kTranslate);
    QVERIFY(w.statusMessage().isEmpty());
    QCOMPARE(w.resultBox()->toPlainText(), QStringLiteral("bonjour"));
}

void TestFormMianButtons::escapeCancelsAndInputIsHeld()
{
    FormMianRig rig(kFrench, true);
    FormMian& w = rig.window();
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    rig.service().setDelayMs(4000);
    w.sourceBox()->setPlainText(QStringLiteral("hello"));
    w.resultBox()->setPlainText(QStringLiteral("old"));

    bool heldWhileRunning = false;
    QString statusWhileRunning;
    QTimer::singleShot(200, &w, [&] {
        statusWhileRunning = w.statusMessage();
        QTest::keyClick(w.sourceBox(), Qt::Key_X);
        QTest::mouseClick(w.jcbutton(kClear), Qt::LeftButton);
        heldWhileRunning = w.isTranslating() && w.sourceBox()->toPlainText() == QLatin1String("hello");
        QTest::keyClick(w.sourceBox(), Qt::Key_Escape);
    });
    QElapsedTimer timer;
    timer.start();
    w.jcbuttonClick(kTranslate);
    QVERIFY(timer.elapsed() < 3000);
    QVERIFY(heldWhileRunning);
    QCOMPARE(statusWhileRunning, StringTable::text(1000 + MsgTranslating));
    QCOMPARE(w.statusMessage(), StringTable::text(1000 + MsgCancelled));
    QCOMPARE(w.statusMessage(), QStringLiteral("Translation cancelled."));
    QVERIFY(w.resultBox()->toPlainText().isEmpty());
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello"));
    QVERIFY(!w.isTranslating());
    QVERIFY(QGuiApplication::overrideCursor() == nullptr);

    // Input reaches the window again afterwards.
    w.sourceBox()->moveCursor(QTextCursor::End);
    QTest::keyClick(w.sourceBox(), Qt::Key_Y);
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("helloy"));
}

void TestFormMianButtons::copiedTextIsTranslatedNewestFirst()
{
    FormMianRig rig(kFrench, true);
    FormMian& w = rig.window();
    rig.service().setDelayMs(300);
    QSignalSpy finished(&w, &FormMian::translationFinished);
    QTimer::singleShot(100, &w, [&] {
        w.translateCopiedText(QStringLiteral("one"));
        w.translateCopiedText(QStringLiteral("hello"));
    });
    w.translateCopiedText(QStringLiteral("world"));
    QCOMPARE(w.resultBox()->toPlainText(), QStringLiteral("monde"));
    QTRY_COMPARE(finished.count(), 2);
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello"));
    QCOMPARE(w.resultBox()->toPlainText(), QStringLiteral("bonjour"));
    QTest::qWait(100);
    QCOMPARE(rig.service().count("POST", QStringLiteral("/")), 2);
}

void TestFormMianButtons::autoCopyDoesNotFeedTheMonitor()
{
    // Monitoring takes what is on the clipboard at once; start from an empty one.
    QGuiApplication::clipboard()->clear();
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|1|1")},
                     {QStringLiteral("AutoCopy"), QStringLiteral("True")}},
                    true);
    FormMian& w = rig.window();
    QVERIFY(w.clipboardMonitor()->monitoring());
    QSignalSpy finished(&w, &FormMian::translationFinished);
    QGuiApplication::clipboard()->setText(QStringLiteral("hello world"));
    QTRY_COMPARE(finished.count(), 1);
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello world"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("bonjour monde"));
    QTest::qWait(200);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(rig.service().count("POST", QStringLiteral("/")), 1);
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello world"));
}

void TestFormMianButtons::webPageTranslation()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("17|19|1|1|22|0|1")}}, true);
    FormMian& w = rig.window();
    auto* go = w.findChild<QAbstractButton*>(QStringLiteral("jcbutton1"));
    QVERIFY(go);
    QCOMPARE(go->text(), QStringLiteral("Goto"));
    const QString typed = QStringLiteral("  example.org/a b?x=1&y=2#top ");
    w.ucComText()->setEditText(typed);
    go->click();
    QCOMPARE(rig.openedUrls.size(), 1);
    const QString expected =
        webPageTranslationAddress(rig.service().baseUrl(), QStringLiteral("de"), QStringLiteral("en"),
                                  QStringLiteral("fr"), QStringLiteral("example.org/a b?x=1&y=2#top"));
    QVERIFY(expected.endsWith(QStringLiteral("&u=example.org/a b?x=1&y=2#top")));
    QCOMPARE(rig.openedUrls.constFirst().toString(), QUrl(expected, QUrl::TolerantMode).toString());
    QCOMPARE(w.ucComText()->count(), 1);
    QCOMPARE(w.ucComText()->itemText(0), typed);
    QCOMPARE(w.ucComText()->currentText(), typed);

    for (int i = 1; i <= 10; ++i) {
        w.ucComText()->setEditText(QStringLiteral("site%1.example").arg(i));
        go->click();
    }
    QCOMPARE(w.ucComText()->count(), 10);
    QCOMPARE(w.ucComText()->itemText(0), QStringLiteral("site1.example"));
    QCOMPARE(w.ucComText()->itemText(9), QStringLiteral("site10.example"));
    QCOMPARE(w.ucComText()->currentText(), QStringLiteral("site10.example"));
    QVERIFY(rig.service().requests().isEmpty());
}

void TestFormMianButtons::closeHidesWhileExitQuits()
{
    FormMianRig rig;
    FormMian& w = rig.window();
    w.setTrayPresent(true);
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QSignalSpy hidden(&w, &FormMian::hiddenToTray);
    QSignalSpy exiting(&w, &FormMian::exiting);

    QVERIFY(!w.close());
    QTRY_VERIFY(w.isHidden());
    QCOMPARE(hidden.count(), 1);
    QCOMPARE(exiting.count(), 0);

    // The toggle brings it back, and minimises it to the tray again.
    w.toggleShowHide();
    QVERIFY(w.isVisible());
    QVERIFY(!w.isMinimized());
    w.dispatch(QStringLiteral("menuSYS1"));
    QTRY_VERIFY(w.isHidden());
    QCOMPARE(hidden.count(), 2);
    w.toggleShowHide();
    QVERIFY(w.isVisible());

    w.requestExit();
    QVERIFY(w.exitRequested());
    QVERIFY(!w.isVisible());
    QCOMPARE(exiting.count(), 1);
    QVERIFY(!w.clipboardMonitor()->monitoring());
}

void TestFormMianButtons::closeWithoutTrayStaysMinimised()
{
    FormMianRig rig;
    FormMian& w = rig.window();
    w.show();
    QVERIFY(QTest::qWaitForWindowExposed(&w));
    QSignalSpy hidden(&w, &FormMian::hiddenToTray);
    QVERIFY(!w.close());
    QVERIFY(w.isMinimized());
    QTest::qWait(50);
    QVERIFY(w.isVisible());
    QCOMPARE(hidden.count(), 0);

    QSignalSpy exiting(&w, &FormMian::exiting);
    w.dispatch(QStringLiteral("menuF3"));
    QCOMPARE(exiting.count(), 1);
    QVERIFY(!w.isVisible());
}

void TestFormMianButtons::speechFailureGoesToTheStatusLine()
{
    // No service at all: the translation fails, the source still gets its speaker.
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("17|19|1|1|15|0|1")}});
    FormMian& w = rig.window();
    w.sourceBox()->setPlainText(QStringLiteral("hello"));
    w.jcbuttonClick(kTranslate);
    QCOMPARE(w.statusMessage(), StringTable::text(1000 + MsgNetworkFailed));
    QVERIFY(w.resultBox()->toPlainText().isEmpty());
    QVERIFY(!w.speakerButton(1)->isHidden());
    w.speakerButton(1)->click();
    QTRY_COMPARE_WITH_TIMEOUT(w.statusMessage(), StringTable::text(1000 + MsgSpeechFailed), 10000);
}

QTEST_MAIN(TestFormMianButtons)
#include "test_formmian_buttons.moc"
