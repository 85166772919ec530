#pragma once

#include "app/FormMian.h"
#include "app/Settings.h"
#include "net/Connectivity.h"
#include "standin/StandinService.h"
#include "translate/ServiceAddresses.h"
#include "translate/TranslationEngine.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QUrlQuery>
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
    explicit ClipboardDesk(const Setup& setup)
    {
        if (!m_service.listen())
            qFatal("the stand-in service cannot listen");
        m_service.setDelayMs(setup.serviceDelayMs);
        qputenv("QUILLORA_SERVICE_URL", m_service.baseUrl().toUtf8());
        qputenv("QUILLORA_API_URL", m_service.baseUrl().toUtf8());
        // Detection, target French, both panes, monitoring on, caching on.
        m_settings.setOptions({0, 19, 1, 1, 15, 1, 1});
        m_settings.setAutoCopy(setup.autoCopy);
        m_engine = std::make_unique<TranslationEngine>(ServiceAddresses::fromEnvironment());
        FormMianDeps deps;
        deps.settings = &m_settings;
        deps.connectivity = &m_online;
        deps.engine = m_engine.get();
        deps.registerHotKey = setup.hotKey;
        deps.programPath = programPath();
        deps.notice = [](QWidget*, const NoticeRequest&) { return QMessageBox::Ok; };
        deps.openUrl = [](const QUrl&) { return true; };
        deps.runDialog = [](QDialog*) { return 0; };
        m_window = std::make_unique<FormMian>(deps);
    }

    FormMian& window() { return *m_window; }
    StandinService& service() { return m_service; }
    QString programPath() const { return m_dir.filePath("bin/quillora"); }
    int translationRequests() const { return m_service.count("POST", "/"); }
    QString lastRequestText() const
    {
        const QByteArray body =
            m_service.requests().isEmpty() ? QByteArray() : m_service.requests().last().body;
        return QUrlQuery(QString::fromUtf8(body)).queryItemValue("text", QUrl::FullyDecoded);
    }

private:
    QTemporaryDir m_dir;
    Settings m_settings{m_dir.filePath("Quillora.conf")};
    StandinService m_service;
    FixedConnectivity m_online{true};
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<FormMian> m_window;
};

// xclip standing in for other programs; each copy serves the clipboard until it is ended.
class Xclip
{
public:
    ~Xclip() { endAll(); }
    void copy(const QByteArray& data, const QString& type = "UTF8_STRING")
    {
        auto& process = m_running.emplace_back(std::make_unique<QProcess>());
        process->start("xclip", {"-selection", "clipboard", "-quiet", "-t", type});
        process->waitForStarted();
        process->write(data);
        process->closeWriteChannel();
    }
    void endAll()
    {
        for (auto& process : m_running) {
            process->kill();
            process->waitForFinished(2000);
        }
        m_running.clear();
    }
    // What another program reads now; the event loop runs meanwhile so this program can answer.
    static QString read()
    {
        QProcess process;
        process.start("xclip", {"-o", "-selection", "clipboard"});
        if (QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 5000))
            return QString::fromUtf8(process.readAllStandardOutput());
        process.kill();
        process.waitForFinished();
        return {};
    }

private:
    std::vector<std::unique_ptr<QProcess>> m_running;
};

} // namespace quillora::test
