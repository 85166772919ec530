#include "x11/ClipboardDesk.h"

#include "translate/ServiceAddresses.h"
#include "translate/TranslationEngine.h"

#include <QDeadlineTimer>
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

    m_settings = std::make_unique<Settings>(m_dir.filePath(QStringLiteral("Quillora.conf")));
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
    deps.notice = [this](QWidget*, const NoticeRequest& request) {
        notices.append(request);
        return QMessageBox::Ok;
    };
    deps.openUrl = [](const QUrl&) { return true; };
    deps.runDialog = [](QDialog*) { return 0; };
    m_window = std::make_unique<FormMian>(deps);
}

ClipboardDesk::~ClipboardDesk()
{
    m_window.reset();
}

int ClipboardDesk::translationRequests() const
{
    return m_service.count("POST", QStringLiteral("/"));
}

QString ClipboardDesk::lastRequestText() const
{
    const auto& requests = m_service.requests();
    for (auto it = requests.crbegin(); it != requests.crend(); ++it) {
        if (it->method == "POST" && it->path() == QLatin1String("/"))
            return QUrlQuery(QString::fromUtf8(it->body))
                .queryItemValue(QStringLiteral("text"), QUrl::FullyDecoded);
    }
    return {};
}

QProcess* Xclip::copy(const QByteArray& data, const QString& type)
{
    auto* process = new QProcess;
    QStringList args{QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-quiet")};
    if (!type.isEmpty())
        args << QStringLiteral("-t") << type;
    process->start(QStringLiteral("xclip"), args);
    process->waitForStarted();
    process->write(data);
    process->closeWriteChannel();
    m_running.append(process);
    return process;
}

void Xclip::endAll()
{
    for (QProcess* process : std::as_const(m_running)) {
        if (process->state() != QProcess::NotRunning) {
            process->kill();
            process->waitForFinished(2000);
        }
        delete process;
    }
    m_running.clear();
}

QString Xclip::read(int timeoutMs)
{
    QProcess process;
    process.start(QStringLiteral("xclip"),
                  {QStringLiteral("-o"), QStringLiteral("-selection"), QStringLiteral("clipboard")});
    if (!process.waitForStarted())
        return {};
    const QDeadlineTimer deadline(timeoutMs);
    while (process.state() != QProcess::NotRunning && !deadline.hasExpired())
        QTest::qWait(5);
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
        return {};
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

} // namespace quillora::test
