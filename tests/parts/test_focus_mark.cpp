#include "desktop/ButtonRow.h"
#include "desktop/LanguagePickers.h"
#include "desktop/TextPanes.h"
#include "desktop/VisualStyle.h"
#include "ui/FocusMarkStyle.h"

#include <QApplication>
#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestFocusMark : public QObject
{
    Q_OBJECT
    QString m_style;

private Q_SLOTS:
    void initTestCase()
    {
        m_style = QApplication::style()->name();
        QApplication::setStyle(new FocusMarkStyle(m_style));
    }
    void cleanupTestCase() { QApplication::setStyle(m_style); }

    void markAroundTheFocus_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("control");
        for (int style = 0; style <= 3; ++style) {
            for (const QString& name : {u"jcbutton_0"_s, u"Check1"_s, u"Combo2"_s, u"sourceBox"_s})
                QTest::addRow("%d %s", style, qPrintable(name)) << style << name;
        }
    }

    // The control the keyboard moved to has (at least) its outer two pixels in the highlight colour.
    void markAroundTheFocus()
    {
        QFETCH(int, style);
        QFETCH(QString, control);
        QWidget pic1;
        pic1.resize(720, 430);
        TextPanes panes(&pic1, [] {});
        LanguagePickers pickers(&pic1);
        ButtonRow buttons(&pic1);
        applyVisualStyle(style, &pic1, panes.checkBoxes(), buttons.buttons());
        pic1.show();
        QVERIFY(QTest::qWaitForWindowActive(&pic1));
        auto* focused = pic1.findChild<QWidget*>(control);
        focused->clearFocus(); // the first box may hold the focus the window got
        focused->setFocus(Qt::ShortcutFocusReason);
        QTRY_VERIFY(focused->hasFocus());
        const QImage image = focused->grab().toImage();
        const QRgb highlight = focused->palette().color(QPalette::Active, QPalette::Highlight).rgb();
        int marked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                marked += image.pixel(x, y) == highlight;
        }
        const int band = 4 * (image.width() + image.height()) - 16;
        QVERIFY2(marked >= band, qPrintable(u"%1 of %2"_s.arg(marked).arg(band)));
    }
};

QTEST_MAIN(TestFocusMark)
#include "test_focus_mark.moc"
