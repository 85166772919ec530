#include "net/PromotionPanel.h"

#include "app/AccessKeys.h"
#include "app/StringTable.h"
#include "net/Connectivity.h"
#include "net/Http.h"
#include "net/PromotionView.h"
#include "net/WebLink.h"

#include <QDir>
#include <QEvent>
#include <QFile>
#include <QPushButton>
#include <QSaveFile>
#include <QTimer>
#include <QWidget>
#include <algorithm>

namespace quillora
{

namespace
{

// The classic banner size, as a share of the panel, which grows with the font.
constexpr int kViewWidth = 468;
constexpr int kPanelWidth = 710;
constexpr int kGap = 4;

} // namespace

PromotionPanel::PromotionPanel(QWidget* PicAD, PromotionPanelDeps deps)
    : QObject(PicAD), m_deps(std::move(deps)), m_timer(new QTimer(this)), m_http(new HttpClient(this)),
      m_view(new PromotionView(PicAD, m_deps.openUrl)), m_button(new QPushButton(PicAD))
{
    const int height = PicAD->height();
    const int viewWidth = PicAD->width() * kViewWidth / kPanelWidth;
    m_view->setGeometry(0, 0, viewWidth, height);
    m_button->setObjectName(QStringLiteral("jcbutton2"));
    m_button->setAutoDefault(false);
    m_button->setGeometry(viewWidth + kGap, 0, std::max(0, PicAD->width() - viewWidth - kGap), height);
    connect(m_button, &QPushButton::clicked, this, &PromotionPanel::jcbutton2_Click);

    SetPromotionPlaceholder();
    showCaption(m_texts.constFirst());
    WriteOfflinePromotionFiles();
    m_view->viewport()->installEventFilter(this);

    m_timer->setObjectName(QStringLiteral("Timer3"));
    m_timer->setInterval(kTickMs);
    connect(m_timer, &QTimer::timeout, this, &PromotionPanel::Timer3_Timer);
    m_timer->start();
}

// The offline page goes in once the window is on screen; laying it out is no part of the showing.
bool PromotionPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_view->viewport() && event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        QTimer::singleShot(kFirstPageDelayMs, this, [this] {
            if (m_view->page().isEmpty())
                m_view->showFile(QDir(m_deps.tempFolder).filePath(kOfflinePage));
        });
    }
    return QObject::eventFilter(watched, event);
}

QAbstractButton* PromotionPanel::jcbutton2() const
{
    return m_button;
}

void PromotionPanel::Timer3_Timer()
{
    // Ticks while the lists are on their way are skipped.
    if (m_fetching)
        return;
    if (!m_deps.connectivity->isOnline()) {
        WriteOfflinePromotionFiles();
        return;
    }
    if (m_refetchCount != kRefetchAt) {
        rotate();
        return;
    }
    m_fetching = true;
    m_http->get(m_deps.addresses.makerList(kPageList), [this](const HttpReply& pageList) {
        const QString pages = urlBytesText(pageList, false);
        if (pages.isEmpty())
            WriteOfflinePromotionFiles();
        else
            m_pages = splitPageList(pages);
        m_http->get(m_deps.addresses.makerList(kTextList), [this](const HttpReply& textList) {
            FillPromotionTexts(urlText(textList));
            m_refetchCount = 0;
            m_fetching = false;
            rotate();
            Q_EMIT listsArrived();
        });
    });
}

void PromotionPanel::rotate()
{
    if (m_pageIndex >= m_pages.size())
        m_pageIndex = 0;
    if (m_textIndex >= m_texts.size())
        m_textIndex = 0;
    if (m_rotationCount == kRotateAt) {
        // An empty address shows nothing new but still takes its turn.
        const QString page = m_pages.value(m_pageIndex);
        if (!page.isEmpty())
            m_view->navigate(QUrl(page));
        ++m_pageIndex;
        showCaption(m_texts.value(m_textIndex));
        Q_EMIT captionChanged();
        ++m_textIndex;
        m_rotationCount = 0;
    }
    ++m_refetchCount;
    ++m_rotationCount;
}

void PromotionPanel::applyCaptions(int language)
{
    m_language = language;
    m_view->setAccessibleName(StringTable::text(language, NamePromotionPage));
    showCaption(m_shown);
}

void PromotionPanel::showCaption(const SiteRecord& shown)
{
    m_shown = shown;
    m_button->setText(AccessKeys::literal(shown.caption));
    m_button->setAccessibleName(StringTable::text(m_language, NamePromotionButton).arg(shown.caption));
}

void PromotionPanel::jcbutton2_Click()
{
    openWebAddress(QUrl(m_shown.address), m_deps.openUrl);
}

void PromotionPanel::FillPromotionTexts(const QString& text)
{
    const QList<SiteRecord> texts = parseSitesList(text);
    if (texts.isEmpty()) {
        SetPromotionPlaceholder();
        return;
    }
    m_texts = texts;
    m_textIndex = 0;
}

void PromotionPanel::SetPromotionPlaceholder()
{
    m_texts = {{QStringLiteral("Your AD here ") + m_deps.addresses.partnerMail(),
                m_deps.addresses.advertisePage().toString()}};
}

void PromotionPanel::WriteOfflinePromotionFiles()
{
    const QDir folder(m_deps.tempFolder);
    for (const QString& name : {kOfflineData, kOfflinePage}) {
        const QString path = folder.filePath(name);
        if (QFile::exists(path))
            continue;
        QFile resource(QStringLiteral(":/promotion/") + name);
        QSaveFile out(path);
        if (!resource.open(QIODevice::ReadOnly) || !out.open(QIODevice::WriteOnly))
            continue;
        out.write(resource.readAll());
        out.commit();
    }
}

} // namespace quillora
