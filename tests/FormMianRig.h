#pragma once

#include "app/FormMian.h"
#include "app/Settings.h"
#include "net/Connectivity.h"
#include "standin/StandinService.h"
#include "translate/TranslationEngine.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QTemporaryDir>
#include <QUrl>
#include <functional>
#include <memory>

namespace quillora::test
{

// A main window on a private settings file with recorded notices, opened addresses, file dialogs
// and modal dialogs; with a stand-in service when asked for one.
class FormMianRig
{
public:
    // `setup`: raw values of the "Setup" group written before the window loads.
    explicit FormMianRig(const QHash<QString, QString>& setup = {}, bool withService = false,
                         bool registerHotKey = false);
    ~FormMianRig();

    FormMian& window() { return *m_window; }
    Settings& settings() { return *m_settings; }
    StandinService& service() { return *m_service; }
    QString settingsText() const; // the raw settings file
    QString path(const QString& name) const { return m_dir.filePath(name); }

    FixedConnectivity connectivity{true};
    QList<NoticeRequest> notices;
    QList<bool> noticeHadOwner;
    QList<QUrl> openedUrls;
    QList<FileDialogRequest> fileRequests;
    QString fileAnswer;                        // what the file dialog returns
    std::function<int(QDialog*)> dialogAnswer; // default: Rejected without showing
    QList<QDialog*> dialogsRun;                // valid only inside dialogAnswer

private:
    QTemporaryDir m_dir;
    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<StandinService> m_service;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<FormMian> m_window;
};

} // namespace quillora::test
