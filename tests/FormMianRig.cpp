#include "FormMianRig.h"

#include <QDialog>
#include <QFile>
#include <QSettings>
#include <QTest>

namespace quillora::test
{

FormMianRig::FormMianRig(const QHash<QString, QString>& setup, bool withService, bool registerHotKey)
{
    const QString file = m_dir.filePath(QStringLiteral("Quillora.conf"));
    if (!setup.isEmpty()) {
        QSettings raw(file, QSettings::IniFormat);
        raw.beginGroup(QStringLiteral("Setup"));
        for (auto it = setup.begin(); it != setup.end(); ++it)
            raw.setValue(it.key(), it.value());
    }
    m_settings = std::make_unique<Settings>(file);

    FormMianDeps deps;
    deps.settings = m_settings.get();
    deps.connectivity = &connectivity;
    deps.registerHotKey = registerHotKey;
    deps.programPath = QStringLiteral("/opt/quillora/bin/quillora");
    deps.notice = [this](QWidget* owner, const NoticeRequest& request) {
        notices.append(request);
        noticeHadOwner.append(owner != nullptr);
        return QMessageBox::Ok;
    };
    deps.openUrl = [this](const QUrl& url) {
        openedUrls.append(url);
        return true;
    };
    deps.chooseFile = [this](QWidget*, const FileDialogRequest& request) {
        fileRequests.append(request);
        return fileAnswer;
    };
    deps.runDialog = [this](QDialog* dialog) {
        dialogsRun.append(dialog);
        return dialogAnswer ? dialogAnswer(dialog) : int(QDialog::Rejected);
    };
    // Never the live service: without a stand-in the addresses point at a closed loopback port.
    QByteArray base = QByteArrayLiteral("http://127.0.0.1:1");
    if (withService) {
        m_service = std::make_unique<StandinService>();
        if (!m_service->listen())
            qFatal("the stand-in service cannot listen");
        base = m_service->baseUrl().toUtf8();
    }
    qputenv("QUILLORA_SERVICE_URL", base);
    qputenv("QUILLORA_API_URL", base);
    m_engine = std::make_unique<TranslationEngine>(ServiceAddresses::fromEnvironment());
    deps.engine = m_engine.get();
    m_window = std::make_unique<FormMian>(deps);
}

FormMianRig::~FormMianRig()
{
    m_window.reset();
    m_engine.reset();
}

QString FormMianRig::settingsText() const
{
    QFile file(m_settings->filePath());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll());
}

} // namespace quillora::test
