#pragma once

#include "net/MakerLists.h"
#include "translate/ServiceAddresses.h"

#include <QList>
#include <QObject>
#include <functional>

class QAction;
class QMenu;
class QWidget;

namespace quillora
{

class HttpClient;

// The "Cool Website" menu: the fixed "menuSite10" at once, and the records of the interface
// language's sites list as "menuSite0", "menuSite1", ... once the list arrives. The first list is
// fetched once the window has first been painted, so it never holds up the showing; later ones at once,
// shown or hidden.
class SitesMenu : public QObject
{
    Q_OBJECT
public:
    SitesMenu(QMenu* bar, QAction* fixedItem, QWidget* window, const ServiceAddresses& addresses,
              std::function<bool(const QUrl&)> openUrl);

    // Builds the menu again for interface language 1-7.
    void rebuild(int language);
    // Opens what a sites key stands for; "menuSite10" is the fixed page even when a long list also
    // made an item of that name.
    void open(const QString& key) const;
    const QList<SiteRecord>& records() const { return m_records; }

Q_SIGNALS:
    void triggered(const QString& key);
    void filled(); // the list's records are in the menu

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fetch(int generation);
    void fill(const QString& text);
    void addRecordItems();

    QMenu* m_bar;
    QAction* m_fixed;
    QWidget* m_window;
    ServiceAddresses m_addresses;
    std::function<bool(const QUrl&)> m_openUrl;
    HttpClient* m_http;
    QList<SiteRecord> m_records;
    QList<QAction*> m_items;
    int m_language = 1;
    int m_generation = 0;
    bool m_painted = false;
    bool m_waitingForPaint = false;
};

} // namespace quillora
