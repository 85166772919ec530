#include "net/SitesMenu.h"

#include "app/AccessKeys.h"
#include "net/Http.h"
#include "net/WebLink.h"

#include <QAction>
#include <QEvent>
#include <QMenu>
#include <QTimer>
#include <QWidget>

namespace quillora
{

namespace
{

const QString kFixedKey = QStringLiteral("menuSite10");
constexpr int kSettleMs = 1000;

QString itemKey(qsizetype index)
{
    return QStringLiteral("menuSite%1").arg(index);
}

} // namespace

SitesMenu::SitesMenu(QMenu* bar, QAction* fixedItem, QWidget* window, const ServiceAddresses& addresses,
                     std::function<bool(const QUrl&)> openUrl)
    : QObject(window), m_bar(bar), m_fixed(fixedItem), m_window(window), m_addresses(addresses),
      m_openUrl(std::move(openUrl)), m_http(new HttpClient(this))
{
    m_window->installEventFilter(this);
}

void SitesMenu::rebuild(int language)
{
    m_language = language;
    qDeleteAll(m_items);
    m_items.clear();
    const int generation = ++m_generation;
    m_http->cancel();
    // Only the first list waits for a paint: a window hidden since then may not be painted for long.
    if (m_painted) {
        QTimer::singleShot(0, this, [this, generation] { fetch(generation); });
        return;
    }
    m_waitingForPaint = true;
}

// The first list waits until the window has been painted and has settled: the showing comes first,
// and the network stack is not loaded while the window is still being put on screen.
bool SitesMenu::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Paint && !m_painted) {
        m_painted = true;
        if (m_waitingForPaint) {
            m_waitingForPaint = false;
            const int generation = m_generation;
            QTimer::singleShot(kSettleMs, this, [this, generation] { fetch(generation); });
        }
    }
    return QObject::eventFilter(watched, event);
}

// The list first, its alternate when the list gives nothing; with neither the records stay as they were.
// A newer rebuild may come while the lists are on their way: its generation wins.
void SitesMenu::fetch(int generation)
{
    if (generation != m_generation)
        return;
    const SitesListNames names = sitesListNames(m_language);
    m_http->get(m_addresses.makerList(names.primary), [this, generation, names](const HttpReply& reply) {
        if (generation != m_generation)
            return;
        const QString text = urlText(reply);
        if (!text.isEmpty())
            return fill(text);
        m_http->get(m_addresses.makerList(names.alternate), [this, generation](const HttpReply& alternate) {
            if (generation == m_generation)
                fill(urlText(alternate));
        });
    });
}

void SitesMenu::fill(const QString& text)
{
    if (!text.isEmpty())
        m_records = parseSitesList(text);
    addRecordItems();
    Q_EMIT filled();
}

void SitesMenu::addRecordItems()
{
    for (qsizetype i = 0; i < m_records.size(); ++i) {
        const QString key = itemKey(i);
        auto* item = new QAction(AccessKeys::literal(m_records.at(i).caption), m_bar);
        item->setObjectName(key);
        connect(item, &QAction::triggered, this, [this, key] { Q_EMIT triggered(key); });
        m_bar->insertAction(m_fixed, item);
        m_items.append(item);
    }
}

void SitesMenu::open(const QString& key) const
{
    if (key == kFixedKey) {
        openWebAddress(m_addresses.sitesPage(), m_openUrl);
        return;
    }
    for (qsizetype i = 0; i < m_records.size(); ++i) {
        if (key == itemKey(i)) {
            openWebAddress(QUrl(m_records.at(i).address), m_openUrl);
            return;
        }
    }
}

} // namespace quillora
