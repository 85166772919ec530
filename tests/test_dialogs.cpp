#include "TestSupport.h"
#include "app/Settings.h"
#include "app/StringTable.h"
#include "desktop/Form2.h"
#include "desktop/ModFont.h"
#include "net/FormAbout.h"
#include "translate/ServiceAddresses.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFontComboBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace quillora;

namespace
{

bool hasThai(const QString& text)
{
    for (const QChar c : text) {
        if (c.script() == QChar::Script_Thai)
            return true;
    }
    return false;
}

// Runs `drive` on the modal dialog as soon as the dialog's own event loop runs.
void whenModal(const std::function<void(QWidget*)>& drive)
{
    QTimer::singleShot(0, [drive] { drive(QApplication::activeModalWidget()); });
}

} // namespace

class TestDialogs : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void openUrl(const QUrl& url) { m_opened.append(url); }

private Q_SLOTS:
    void init()
    {
        QVERIFY(m_dir.isValid());
        // A fresh file per case: QSettings caches by path and may miss a same-size rewrite within a second.
        m_path = m_dir.filePath(QStringLiteral("Quillora%1.conf").arg(++m_case));
    }

    // Default Options dialog

    void form2CaptionsAndLists()
    {
        Settings settings(m_path);
        Form2 form(&settings, 1);
        QCOMPARE(form.windowTitle(), QStringLiteral("Default Options"));
        QCOMPARE(form.findChild<QLabel*>("EruLabel1")->text(), QStringLiteral(" Default system language:  "));
        QCOMPARE(form.check(3)->text(), QStringLiteral("Show phonetically"));
        QCOMPARE(form.check(4)->text(), QStringLiteral("Show dictionary"));
        QCOMPARE(form.check(1)->text(), QStringLiteral("Monitoring clipboard"));
        QCOMPARE(form.check(2)->text(), QStringLiteral("Automatic Cahing 3 Translation"));
        QCOMPARE(form.findChild<QPushButton*>("Command1")->text(), QStringLiteral("OK"));
        QCOMPARE(form.findChild<QPushButton*>("Command2")->text(), QStringLiteral("Close"));
        QStringList labels;
        for (const QLabel* l : form.findChildren<QLabel*>())
            labels.append(l->text());
        QVERIFY(labels.contains(QStringLiteral("Translate from:")));
        QVERIFY(labels.contains(QStringLiteral("Translate into:")));
        QVERIFY(!form.check(0));
        QVERIFY(!form.check(5));

        QCOMPARE(form.combo1()->count(), 59);
        QCOMPARE(form.combo3()->count(), 59);
        QCOMPARE(form.combo2()->count(), 61);
        QCOMPARE(form.combo1()->itemText(0), QStringLiteral("Afrikaans"));
        QCOMPARE(form.combo3()->itemText(58), QStringLiteral("Yiddish"));
        QCOMPARE(form.combo2()->itemText(0), QStringLiteral("Detect language"));
        QCOMPARE(form.combo2()->itemText(1), QStringLiteral("-------------"));
        QCOMPARE(form.combo2()->itemText(2), QStringLiteral("Afrikaans"));
        QCOMPARE(form.combo2()->itemText(60), QStringLiteral("Yiddish"));

        Form2 thai(&settings, 4);
        QCOMPARE(thai.windowTitle(), StringTable::text(4030));
        QCOMPARE(thai.findChild<QLabel*>("EruLabel1")->text(),
                 QLatin1Char(' ') + StringTable::text(4031) + QStringLiteral("  "));
        QCOMPARE(thai.check(2)->text(), StringTable::text(4035));
        QCOMPARE(thai.combo1()->itemText(15), StringTable::text(4053));
        QVERIFY(hasThai(thai.windowTitle()));
    }

    void form2Loads_data()
    {
        QTest::addColumn<QString>("stored");   // null: no key at all
        QTest::addColumn<QList<int>>("shown"); // Combo2, Combo3, Check3, Check4, Combo1, Check1, Check2
        QTest::newRow("first run") << QString() << QList<int>{0, 15, 1, 1, 15, 1, 1};
        QTest::newRow("all fields") << "3|7|0|0|15|0|0" << QList<int>{3, 7, 0, 0, 15, 0, 0};
        QTest::newRow("other values") << "1|40|1|0|2|1|0" << QList<int>{1, 40, 1, 0, 2, 1, 0};
        QTest::newRow("stops at text") << "5|9|x|0|3|0|0" << QList<int>{5, 9, 1, 1, 15, 1, 1};
        QTest::newRow("short") << "4|20|0" << QList<int>{4, 20, 0, 1, 15, 1, 1};
    }
    void form2Loads()
    {
        QFETCH(QString, stored);
        QFETCH(QList<int>, shown);
        if (!stored.isNull())
            QVERIFY(test::writeFile(m_path, "[Setup]\nOptions=" + stored.toUtf8() + "\n"));
        Settings settings(m_path);
        Form2 form(&settings, 1);
        const QList<int> actual = {form.combo2()->currentIndex(),   form.combo3()->currentIndex(),
                                   int(form.check(3)->isChecked()), int(form.check(4)->isChecked()),
                                   form.combo1()->currentIndex(),   int(form.check(1)->isChecked()),
                                   int(form.check(2)->isChecked())};
        QCOMPARE(actual, shown);
    }

    void form2OkStoresTheFields()
    {
        QVERIFY(test::writeFile(m_path, "[Setup]\nOptions=3|7|0|0|15|0|0\n"));
        Settings settings(m_path);
        {
            Form2 form(&settings, 1);
            QTest::mouseClick(form.findChild<QPushButton*>("Command1"), Qt::LeftButton);
            QCOMPARE(form.result(), int(QDialog::Accepted));
            QCOMPARE(Settings(m_path).optionsText(), QStringLiteral("3|7|0|0|15|0|0"));
        }
        Form2 form(&settings, 1);
        form.combo2()->setCurrentIndex(1); // the separator line
        form.combo3()->setCurrentIndex(58);
        form.check(3)->setChecked(true);
        form.combo1()->setCurrentIndex(40);
        form.check(2)->setChecked(true);
        QTest::mouseClick(form.findChild<QPushButton*>("Command1"), Qt::LeftButton);
        QCOMPARE(form.result(), int(QDialog::Accepted));
        QCOMPARE(Settings(m_path).optionsText(), QStringLiteral("1|58|1|0|40|0|1"));
    }

    void form2CloseStoresNothing()
    {
        Settings settings(m_path);
        {
            Form2 form(&settings, 1);
            form.combo3()->setCurrentIndex(3);
            QTest::mouseClick(form.findChild<QPushButton*>("Command2"), Qt::LeftButton);
            QCOMPARE(form.result(), int(QDialog::Rejected));
        }
        QVERIFY(!QFile::exists(m_path) || !test::readFile(m_path).contains("Options"));

        QVERIFY(test::writeFile(m_path, "[Setup]\nOptions=2|9|1|1|15|1|1\n"));
        const QByteArray before = test::readFile(m_path);
        Form2 form(&settings, 1);
        form.check(1)->setChecked(false);
        QTest::mouseClick(form.findChild<QPushButton*>("Command2"), Qt::LeftButton);
        QCOMPARE(test::readFile(m_path), before);
    }

    // Font

    void colourNumbersAreBlueGreenRed()
    {
        QCOMPARE(toQColor(0), QColor(Qt::black));
        QCOMPARE(toQColor(0x0000FF), QColor(255, 0, 0));
        QCOMPARE(toQColor(0xFF0000), QColor(0, 0, 255));
        QCOMPARE(toQColor(0x00FF8040), QColor(0x40, 0x80, 0xFF));
        QCOMPARE(toQColor(0xFF123456), QColor(0x56, 0x34, 0x12));
        for (quint32 bgr : {0u, 0x0000FFu, 0x00FF00u, 0xFF0000u, 0x00FF8040u, 0x00123456u, 0xFFFFFFu})
            QCOMPARE(fromQFont(QFont(), toQColor(bgr), 0).colorBgr, bgr);
    }

    void storedFontBecomesQFont()
    {
        const FontSetting standard = parseFont(kDefaultFont).font;
        const QFont font = toQFont(standard);
        QCOMPARE(font.family(), QStringLiteral("Tahoma"));
        QCOMPARE(font.pointSize(), 12);
        QCOMPARE(font.weight(), QFont::Normal);
        QVERIFY(!font.italic());
        QVERIFY(!font.underline());
        QVERIFY(!font.strikeOut());
        QCOMPARE(toQColor(standard.colorBgr), QColor(Qt::black));

        const FontSetting bold = parseFont(QStringLiteral("DejaVu Sans|700|True|20|204|True|True|255")).font;
        const QFont boldFont = toQFont(bold);
        QCOMPARE(boldFont.family(), QStringLiteral("DejaVu Sans"));
        QCOMPARE(boldFont.weight(), QFont::Bold);
        QVERIFY(boldFont.italic());
        QCOMPARE(boldFont.pointSize(), 20);
        QVERIFY(boldFont.underline());
        QVERIFY(boldFont.strikeOut());
        QCOMPARE(toQColor(bold.colorBgr), QColor(Qt::red));
        QCOMPARE(fromQFont(boldFont, toQColor(bold.colorBgr), bold.charset), bold);
        QCOMPARE(formatFont(fromQFont(font, Qt::black, 0)), kDefaultFont);
    }

    void applyFontReachesEveryBox()
    {
        QPlainTextEdit a, b;
        const FontSetting setting =
            parseFont(QStringLiteral("DejaVu Serif|700|False|15|0|False|False|16711680")).font;
        ApplyFont(setting, {&a, &b, nullptr});
        for (QPlainTextEdit* box : {&a, &b}) {
            QCOMPARE(box->font().family(), QStringLiteral("DejaVu Serif"));
            QCOMPARE(box->font().pointSize(), 15);
            QCOMPARE(box->font().weight(), QFont::Bold);
            QCOMPARE(box->palette().color(QPalette::Text), QColor(Qt::blue));
        }
    }

    void chooserCapsTheSize()
    {
        FontSetting big;
        big.pointSize = 96;
        FontChooser chooser(big);
        auto* size = chooser.findChild<QSpinBox*>("fontSize");
        QVERIFY(size);
        QCOMPARE(size->maximum(), 72);
        QCOMPARE(size->minimum(), 1);
        QCOMPARE(chooser.setting().pointSize, 72);
        size->setValue(500);
        QCOMPARE(chooser.setting().pointSize, 72);
        size->setValue(0);
        QCOMPARE(chooser.setting().pointSize, 1);
    }

    void chooserUntouchedKeepsTheSetting()
    {
        FontSetting odd = parseFont(QStringLiteral("Tahoma|300|True|9|161|False|True|32768")).font;
        FontChooser chooser(odd);
        QCOMPARE(chooser.setting(), odd);
        auto* charset = chooser.findChild<QComboBox*>("fontCharset");
        QCOMPARE(charset->currentData().toInt(), 161);
        odd.charset = 77; // not in the list, still kept
        QCOMPARE(FontChooser(odd).setting(), odd);
    }

    void chooseFontOkAndCancel()
    {
        const FontSetting start = parseFont(kDefaultFont).font;
        whenModal([](QWidget* dialog) {
            QVERIFY(dialog);
            QCOMPARE(dialog->objectName(), QStringLiteral("FontChooser"));
            dialog->findChild<QSpinBox*>("fontSize")->setValue(30);
            dialog->findChild<QCheckBox*>("fontBold")->setChecked(true);
            dialog->findChild<QCheckBox*>("fontUnderline")->setChecked(true);
            auto* charset = dialog->findChild<QComboBox*>("fontCharset");
            charset->setCurrentIndex(charset->findData(222));
            static_cast<FontChooser*>(dialog)->setColour(QColor(0, 0, 255));
            QTest::mouseClick(
                dialog->findChild<QDialogButtonBox*>("fontButtons")->button(QDialogButtonBox::Ok),
                Qt::LeftButton);
        });
        const FontSetting chosen = ChooseFontFor(start, nullptr);
        QCOMPARE(chosen.face, QStringLiteral("Tahoma"));
        QCOMPARE(chosen.pointSize, 30);
        QCOMPARE(chosen.weight, 700);
        QVERIFY(chosen.underline);
        QVERIFY(!chosen.italic);
        QCOMPARE(chosen.charset, 222);
        QCOMPARE(chosen.colorBgr, 0xFF0000u);
        QCOMPARE(formatFont(chosen), QStringLiteral("Tahoma|700|False|30|222|True|False|16711680"));

        whenModal([](QWidget* dialog) {
            QVERIFY(dialog);
            dialog->findChild<QSpinBox*>("fontSize")->setValue(40);
            QTest::mouseClick(
                dialog->findChild<QDialogButtonBox*>("fontButtons")->button(QDialogButtonBox::Cancel),
                Qt::LeftButton);
        });
        QCOMPARE(ChooseFontFor(chosen, nullptr), chosen);
    }

    void chooserPicksAnotherFace()
    {
        FontChooser chooser(parseFont(kDefaultFont).font);
        auto* face = chooser.findChild<QFontComboBox*>("fontFace");
        QVERIFY(face->count() > 0);
        const int other = face->currentIndex() == 0 ? face->count() - 1 : 0;
        face->setCurrentIndex(other);
        QCOMPARE(chooser.setting().face, face->currentFont().family());
    }

    // About

    void aboutInEnglish()
    {
        FormAbout about(1);
        QCOMPARE(about.versionLine(), QStringLiteral("Ver:2.1.91"));
        QCOMPARE(about.windowTitle(), QStringLiteral("About"));
        const QStringList texts = about.texts();
        QCOMPARE(texts.size(), 5);
        QCOMPARE(texts[0],
                 QStringLiteral(
                     "This software is based on Google Translate, it supports 58 different languages."));
        QCOMPARE(texts[2], QStringLiteral("All right reserve by Google Translation Engine."));
        QVERIFY(texts[4].startsWith(QStringLiteral("Email: ")));
        for (int i = 0; i < 5; ++i)
            QCOMPARE(texts[i], StringTable::text(1, 103 + i));
        for (const QLabel* label : about.findChildren<QLabel*>()) {
            if (label->objectName() != QLatin1String("Label6"))
                QVERIFY(label->wordWrap());
        }
    }

    void aboutInThai()
    {
        FormAbout about(4);
        QCOMPARE(about.versionLine(), QStringLiteral("Ver:2.1.91"));
        QCOMPARE(about.windowTitle(), StringTable::text(4108));
        QVERIFY(hasThai(about.windowTitle()));
        const QStringList texts = about.texts();
        QCOMPARE(texts.size(), 5);
        for (int i = 0; i < 5; ++i) {
            QCOMPARE(texts[i], StringTable::text(4103 + i));
            QVERIFY(texts[i] != StringTable::text(1103 + i));
        }
        QVERIFY(hasThai(texts[0]));
        QVERIFY(hasThai(texts[1]));
    }

    void aboutPictureOpensTheHomePage()
    {
        const QUrl home = ServiceAddresses::fromEnvironment().productHome();
        QVERIFY(home.isValid());
        QDesktopServices::setUrlHandler(home.scheme(), this, "openUrl");
        FormAbout about(1);
        about.show();
        QVERIFY(QTest::qWaitForWindowExposed(&about));
        auto* image = about.findChild<QToolButton*>("Image1");
        QVERIFY(image);
        QVERIFY(!image->icon().isNull());
        QTest::mouseClick(image, Qt::LeftButton);
        QDesktopServices::unsetUrlHandler(home.scheme());
        QCOMPARE(m_opened, QList<QUrl>{home});

        QTest::mouseClick(about.findChild<QDialogButtonBox*>("Command1")->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
        QCOMPARE(about.result(), int(QDialog::Accepted));
        QVERIFY(!about.isVisible());
    }

private:
    QTemporaryDir m_dir;
    QString m_path;
    QList<QUrl> m_opened;
    int m_case = 0;
};

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
