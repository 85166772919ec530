#include "x11/ClipboardDesk.h"

#include "translate/ServiceAddresses.h"

#include <QTest>
#include <QUrlQuery>

namespace quillora::test
{

ClipboardDesk::ClipboardDesk(const Setup& setup)
{
    if (!m_service.listen())
        qFatal("the stand-in service cannot listen");
    m_service.setDelayMs(setup.serviceDelayMs);
    qputenv("QUILLORA_SERVICE_URL", m_service.baseUrl().toUtf8());
    qputenv("QUILLORA_API_URL", m_service.baseUrl().toUtf8());
    m_settings = std::make_unique<Settings>(m_dir.filePath("Quillora.conf"));
    // Detection, target French, both panes, monitoring on, caching on.
    m_settings->setOptions({0, 19, 1, 1, 15, 1, 1});
    m_settings->setAutoCopy(setup.autoCopy);
    m_engine = std::make_unique<TranslationEngine>(ServiceAddresses::fromEnvironment());
    FormMianDeps deps;
    deps.settings = m_settings.get();
    deps.connectivity = &m_online;
    deps.engine = m_engine.get();
    deps.registerHotKey = setup.hotKey;
    deps.programPath = programPath();
    deps.notice = [](QWidget*, const NoticeRequest&) { return QMessageBox::Ok; };
    deps.openUrl = [](const QUrl&) { return true; };
    deps.runDialog = [](QDialog*) { return 0; };
    m_window = std::make_unique<FormMian>(deps);
}

QString ClipboardDesk::lastRequestText() const
{
    const QByteArray body = m_service.requests().isEmpty() ? QByteArray() : m_service.requests().last().body;
    return QUrlQuery(QString::fromUtf8(body)).queryItemValue("text", QUrl::FullyDecoded);
}

void Xclip::copy(const QByteArray& data, const QString& type)
{
    auto& process = m_running.emplace_back(std::make_unique<QProcess>());
    process->start("xclip", {"-selection", "clipboard", "-quiet", "-t", type});
    process->waitForStarted();
    process->write(data);
    process->closeWriteChannel();
}

void Xclip::endAll()
{
    for (auto& process : m_running) {
        process->kill();
        process->waitForFinished(2000);
    }
    m_running.clear();
}

QString Xclip::read()
{
    QProcess process;
    process.start("xclip", {"-o", "-selection", "clipboard"});
    if (QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 5000))
        return QString::fromUtf8(process.readAllStandardOutput());
    process.kill();
    process.waitForFinished();
    return {};
}

} // namespace quillora::test
