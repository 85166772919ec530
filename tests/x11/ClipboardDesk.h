#pragma once

#include "app/FormMian.h"
#include "app/Settings.h"
#include "net/Connectivity.h"
#include "standin/StandinService.h"
#include "translate/TranslationEngine.h"

#include <QProcess>
#include <QTemporaryDir>
#include <memory>

namespace quillora::test
{

// A real main window watching the X clipboard with target French, translating through an
// in-process stand-in service.
class ClipboardDesk
{
public:
    struct Setup {
        bool autoCopy = false;
        bool hotKey = false;
        int serviceDelayMs = 0;
    };
    explicit ClipboardDesk(const Setup& setup);

    FormMian& window() { return *m_window; }
    StandinService& service() { return m_service; }
    QString programPath() const { return m_dir.filePath("bin/quillora"); }
    int translationRequests() const { return m_service.count("POST", "/"); }
    QString lastRequestText() const;

private:
    QTemporaryDir m_dir;
    StandinService m_service;
    FixedConnectivity m_online{true};
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<FormMian> m_window;
};

// xclip standing in for other programs; each copy serves the clipboard until it is ended.
class Xclip
{
public:
    ~Xclip() { endAll(); }
    void copy(const QByteArray& data, const QString& type = "UTF8_STRING");
    void endAll();
    // What another program reads now; the event loop runs meanwhile so this program can answer.
    static QString read();

private:
    std::vector<std::unique_ptr<QProcess>> m_running;
};

} // namespace quillora::test
