#include "WindowRig.h"
#include "app/StringTable.h"
#include "desktop/Form2.h"
#include "net/Form1.h"
#include "net/FormAbout.h"

#include <QAccessible>
#include <QTest>

using namespace quillora;
using namespace quillora::test;
using namespace Qt::StringLiterals;

namespace
{

// What a screen reader says for the control: a picker by the label that names it, the rest by its own name.
QString spokenName(QWidget* widget)
{
    QAccessibleInterface* control = QAccessible::queryAccessibleInterface(widget);
    const auto labels = control->relations(QAccessible::Label);
    return (labels.isEmpty() || control->role() != QAccessible::ComboBox ? control : labels[0].first)
        ->text(QAccessible::Name)
        .trimmed();
}

// A text of the language's table, as Qt speaks it (mnemonics dropped), "%1" standing for anything.
bool fromTable(int language, const QString& name)
{
    for (int id = language * 1000 + 1; id < language * 1000 + 1000; ++id) {
        if (!StringTable::contains(id))
            continue;
        const QStringList parts = StringTable::text(id).remove(u'&').trimmed().split(u"%1"_s);
        if (parts.size() == 1 ? name == parts[0] : name.startsWith(parts[0]) && name.endsWith(parts.last()))
            return true;
    }
    return false;
}

} // namespace

class TestAccessibleNames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyControlIsNamedAndTabFollowsTheScreen_data()
    {
        QTest::addColumn<int>("language");
        for (int language = 1; language <= kInterfaceLanguageCount; ++language)
            QTest::addRow("lang%d", language) << language;
    }

    // Hidden controls (the speakers) are named too; Tab goes through the shown ones row by row, each
    // row left to right.
    void everyControlIsNamedAndTabFollowsTheScreen()
    {
        QFETCH(int, language);
        WindowRig rig({{u"Language"_s, QString::number(language)}});
        Form2 options(rig.settings.get(), language);
        FormAbout about(language);
        Form1 update(language, u"9.9|2|http://127.0.0.1:1/new|changes"_s, QUrl(), {});
        for (QWidget* window :
             std::initializer_list<QWidget*>{&rig.open(rig.deps()), &options, &about, &update}) {
            window->show();
            QWidgetList tabbed;
            for (QWidget* w = window->nextInFocusChain(); w != window; w = w->nextInFocusChain()) {
                if (!(w->focusPolicy() & Qt::TabFocus) || w->focusProxy() || w->window() != window)
                    continue;
                const QString name = spokenName(w);
                QVERIFY2(!name.isEmpty() && fromTable(language, name),
                         qPrintable(w->objectName() + u": "_s + name));
                if (w->isVisibleTo(window))
                    tabbed << w;
            }
            // Round the chain, only the step from the last control back to the first goes up.
            QStringList upward;
            for (int i = 0; i < tabbed.size(); ++i) {
                QWidget* next = tabbed[(i + 1) % tabbed.size()];
                const QRect from(tabbed[i]->mapTo(window, QPoint()), tabbed[i]->size());
                const QRect to(next->mapTo(window, QPoint()), next->size());
                const bool sameRow = to.top() < from.bottom() && from.top() < to.bottom();
                if (sameRow ? to.left() <= from.left() : to.top() <= from.top())
                    upward << tabbed[i]->objectName() + u">"_s + next->objectName();
            }
            QVERIFY2(upward.size() == 1, qPrintable(upward.join(u' ')));
        }
    }
};

QTEST_MAIN(TestAccessibleNames)
#include "test_accessible_names.moc"
