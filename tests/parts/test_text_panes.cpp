#include "desktop/TextPanes.h"

#include <QCheckBox>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextDocument>

using namespace quillora;
using namespace Qt::StringLiterals;

namespace
{

// The panes shown fill the result area: the result on top, the others side by side across the width.
bool panesTile(const TextPanes& panes)
{
    const QRect area(0, 188, 710, 239), result = panes.result()->geometry();
    QRect lower;
    for (const QWidget* pane : {panes.phonetic(), panes.dictionary()}) {
        if (!pane->isHidden())
            lower |= pane->geometry();
    }
    return (result | lower) == area && !result.intersects(lower) && (lower.isEmpty() || lower.width() == 710);
}

} // namespace

class TestTextPanes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkBoxesTileTheResultArea()
    {
        QWidget pic1;
        int pasted = 0;
        TextPanes panes(&pic1, [&pasted] { ++pasted; });
        auto* check1 = pic1.findChild<QCheckBox*>(u"Check1"_s);
        auto* check2 = pic1.findChild<QCheckBox*>(u"Check2"_s);
        for (const auto& [phonetic, dictionary] : {std::pair(false, false), std::pair(true, false),
                                                   std::pair(true, true), std::pair(false, true)}) {
            panes.setPhoneticShown(phonetic);
            panes.setDictionaryShown(dictionary);
            QCOMPARE(std::pair(!panes.phonetic()->isHidden(), !panes.dictionary()->isHidden()),
                     std::pair(phonetic, dictionary));
            QVERIFY(panesTile(panes));
            check1->toggle(); // the user's tick acts at once
            QCOMPARE(panes.phonetic()->isHidden(), phonetic);
            QVERIFY(panesTile(panes));
            check1->toggle();
        }
        QCOMPARE(check2->isChecked(), true);
        QTest::keyClick(panes.source(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(pasted, 1);
    }

    void readingDirectionAndFont()
    {
        QWidget pic1;
        TextPanes panes(&pic1, [] {});
        panes.setSourceRightToLeft(true);
        panes.setTargetRightToLeft(true);
        const auto directions = [&panes] {
            QList<Qt::LayoutDirection> all;
            for (const QWidget* box : panes.boxes())
                all << box->layoutDirection();
            return all;
        };
        QCOMPARE(directions(), (QList{Qt::RightToLeft, Qt::RightToLeft, Qt::RightToLeft, Qt::LeftToRight}));
        QVERIFY(panes.result()->document()->defaultTextOption().alignment() & Qt::AlignRight);
        panes.setSourceRightToLeft(false);
        panes.setTargetRightToLeft(false);
        QCOMPARE(directions(), (QList{Qt::LeftToRight, Qt::LeftToRight, Qt::LeftToRight, Qt::LeftToRight}));
        QCOMPARE(panes.result()->document()->defaultTextOption().alignment(),
                 panes.dictionary()->document()->defaultTextOption().alignment());
        FontSetting font = parseFont(u"DejaVu Serif|700|True|15|0|False|False|255"_s).font;
        panes.applyFont(font);
        for (const QWidget* box : panes.boxes()) {
            QCOMPARE(box->font().family(), u"DejaVu Serif"_s);
            QVERIFY(box->font().bold() && box->font().italic() && box->font().pointSize() == 15);
            QCOMPARE(box->palette().color(QPalette::Text), QColor(Qt::red)); // colour 255 is red
        }
    }
};

QTEST_MAIN(TestTextPanes)
#include "test_text_panes.moc"
