#pragma once

#include "translate/ServiceAddresses.h"

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <functional>

class QTimer;
class QUrl;

namespace quillora
{

class ConnectivityProbe;
class HttpClient;

// What the check needs from its window; every part can be replaced by a test.
struct UpdateCheckDeps {
    ConnectivityProbe* connectivity = nullptr;
    // A box captioned "Notice" with the interface text of `offset`; returns the button pressed.
    std::function<QMessageBox::StandardButton(int offset, QMessageBox::Icon, QMessageBox::StandardButtons)>
        notice;
    std::function<bool(const QUrl&)> openUrl;
    std::function<bool(const QString& program, const QStringList& arguments)> startProgram;
    std::function<void()> exitProgram; // the exit commands' way out, not closing to the tray
    QString programPath;
    ServiceAddresses addresses;
};

// The once-per-run update check: `Timer2` fires once, five seconds after the window is made. On an
// accepted update the updater the program carries is written beside the program and started with
// the program's name, and the program ends so that it can be replaced. Where the user cannot write
// the program's folder (a packaged install) the download page opens instead and the program stays.
class UpdateCheck : public QObject
{
    Q_OBJECT
public:
    static constexpr int kDelayMs = 5000;
    static inline const QString kUpdaterResource = QStringLiteral(":/updater/Update.exe");

    UpdateCheck(UpdateCheckDeps deps, QObject* parent);

    // Starts the check; finished() follows once it has run its course.
    void Timer2_Timer();
    QTimer* Timer2() const { return m_timer; }

Q_SIGNALS:
    void finished();

private:
    void listArrived(const QString& text);
    bool writeUpdater(const QString& path) const;

    UpdateCheckDeps m_deps;
    QTimer* m_timer;
    HttpClient* m_http;
};

} // namespace quillora
