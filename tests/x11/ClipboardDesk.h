#pragma once

#include "app/FormMian.h"
#include "app/Settings.h"
#include "net/Connectivity.h"
#include "standin/StandinService.h"

#include <QList>
#include <QProcess>
#include <QTemporaryDir>
#include <memory>

namespace quillora::test
{

// A real main window watching the X clipboard with translation target French, translating through
// an in-process stand-in service.
class ClipboardDesk
{
public:
    struct Setup {
        bool autoCopy = false;
        bool hotKey = false;
        int serviceDelayMs = 0;
    };
    explicit ClipboardDesk(const Setup& setup);
    ~ClipboardDesk();

    FormMian& window() { return *m_window; }
    StandinService& service() { return m_service; }
    QString programPath() const { return m_dir.filePath(QStringLiteral("bin/quillora")); }

    // Translation requests the service has seen, and the text of the last one.
    int translationRequests() const;
    QString lastRequestText() const;

    QList<NoticeRequest> notices;

private:
    QTemporaryDir m_dir;
    StandinService m_service;
    FixedConnectivity m_online{true};
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<FormMian> m_window;
};

// xclip standing in for other programs. Each copy keeps serving the clipboard until another owner
// takes it over; whatever still runs is ended by its PID.
class Xclip
{
public:
    Xclip() = default;
    Xclip(const Xclip&) = delete;
    Xclip& operator=(const Xclip&) = delete;
    ~Xclip() { endAll(); }

    // Starts `xclip -selection clipboard` with `data` as the selection of `type` (default text).
    QProcess* copy(const QByteArray& data, const QString& type = {});
    void endAll();

    // What another program reads from the clipboard now; the event loop keeps running meanwhile,
    // so this program can answer when it owns the clipboard.
    static QString read(int timeoutMs = 5000);

private:
    QList<QProcess*> m_running;
};

} // namespace quillora::test
