#pragma once

#include "net/MakerLists.h"
#include "translate/ServiceAddresses.h"

#include <QObject>
#include <QStringList>
#include <functional>

class QAbstractButton;
class QPushButton;
class QTimer;
class QWidget;

namespace quillora
{

class ConnectivityProbe;
class HttpClient;
class PromotionView;

struct PromotionPanelDeps {
    ConnectivityProbe* connectivity = nullptr;
    std::function<bool(const QUrl&)> openUrl;
    ServiceAddresses addresses;
    QString tempFolder; // the program's private temporary folder
};

// The band under the menu bar: `WebBrowser3` rotates through the maker's promotion pages and
// `jcbutton2` through the promotion texts, on the ticks of `Timer3`. Offline it shows the page the
// program carries.
class PromotionPanel : public QObject
{
    Q_OBJECT
public:
    static constexpr int kTickMs = 6000;
    static constexpr int kRotateAt = 15;
    static constexpr int kRefetchAt = 180;
    static constexpr int kFirstPageDelayMs = 300;
    static inline const QString kPageList = QStringLiteral("ADlist21.txt");
    static inline const QString kTextList = QStringLiteral("TXlist21.txt");
    static inline const QString kOfflinePage = QStringLiteral("offADen21.htm");
    static inline const QString kOfflineData = QStringLiteral("offADen21.xml");

    PromotionPanel(QWidget* PicAD, PromotionPanelDeps deps);

    // A tick that fetches the lists goes on when they have come; listsArrived() then follows.
    void Timer3_Timer();
    QTimer* Timer3() const { return m_timer; }
    PromotionView* WebBrowser3() const { return m_view; }
    QAbstractButton* jcbutton2() const;
    void jcbutton2_Click();
    // Writes the offline page and its data into the temporary folder, each only when missing.
    void WriteOfflinePromotionFiles();

Q_SIGNALS:
    void listsArrived();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void FillPromotionTexts(const QString& text);
    void SetPromotionPlaceholder();
    void rotate();

    PromotionPanelDeps m_deps;
    QTimer* m_timer;
    HttpClient* m_http;
    PromotionView* m_view;
    QPushButton* m_button;
    // The first connected tick fetches the lists.
    int m_refetchCount = kRefetchAt;
    int m_rotationCount = 0;
    QStringList m_pages;
    int m_pageIndex = 0;
    QList<SiteRecord> m_texts;
    int m_textIndex = 0;
    SiteRecord m_shown;
    bool m_fetching = false;
};

} // namespace quillora
