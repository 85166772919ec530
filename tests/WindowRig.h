#pragma once

#include "app/FormMian.h"
#include "app/Settings.h"
#include "net/Connectivity.h"
#include "standin/StandinService.h"
#include "translate/ServiceAddresses.h"
#include "translate/TranslationEngine.h"

#include <QPlainTextEdit>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace quillora::test
{

// A child of the window by its object name; a missing one fails the test at once.
template <typename T> T* named(const QObject& in, const char* name)
{
    T* found = in.findChild<T*>(QLatin1String(name));
    if (!found)
        qFatal("no %s named \"%s\"", T::staticMetaObject.className(), name);
    return found;
}
inline QPlainTextEdit* box(const QObject& in, const char* name)
{
    return named<QPlainTextEdit>(in, name);
}

// Shows `window` and tells whether it came on screen.
inline bool shownOnScreen(QWidget& window)
{
    window.show();
    return QTest::qWaitForWindowExposed(&window);
}

// A main window on a private settings file (`setup`: raw values of its "Setup" group), without the global
// key, recording every notice, opened address, file dialog and started program, and answering modal
// dialogs through `dialogAnswer` (default: Rejected without showing). It translates through `service`
// when `deps(true)` made it listen, else through a closed port.
struct WindowRig {
    explicit WindowRig(const QHash<QString, QString>& setup = {})
    {
        QSettings raw(dir.filePath(QStringLiteral("Quillora.conf")), QSettings::IniFormat);
        for (auto it = setup.begin(); it != setup.end(); ++it)
            raw.setValue(QStringLiteral("Setup/") + it.key(), it.value());
        raw.sync();
        settings = std::make_unique<Settings>(raw.fileName());
    }
    FormMianDeps deps(bool withService = false)
    {
        if (withService && !service.listen())
            qFatal("the stand-in service cannot listen");
        const QByteArray base = withService ? service.baseUrl().toUtf8() : "http://127.0.0.1:1";
        qputenv("QUILLORA_SERVICE_URL", base);
        qputenv("QUILLORA_API_URL", base);
        engine = std::make_unique<TranslationEngine>(ServiceAddresses::fromEnvironment());
        FormMianDeps d;
        d.settings = settings.get();
        d.connectivity = &connectivity;
        d.engine = engine.get();
        d.registerHotKey = false;
        d.programPath = programPath();
        d.notice = [this](QWidget*, const NoticeRequest& request) {
            return notices << request, QMessageBox::Ok;
        };
        d.openUrl = [this](const QUrl& url) { return opened << url.toString(), true; };
        d.openAddress = [this](const QString& address, const OpenFailed& failed) {
            opened << address;
            if (!openFailure.isEmpty())
                failed(openFailure);
        };
        d.chooseFile = [this](QWidget*, const FileDialogRequest& r) { return fileRequests << r, fileAnswer; };
        d.runDialog = [this](QDialog* dialog) { return dialogAnswer ? dialogAnswer(dialog) : 0; };
        d.startProgram = [this](const QString& program, const QStringList& args) {
            return started << (QStringList{program} + args), true;
        };
        return d;
    }
    FormMian& open(const FormMianDeps& d)
    {
        window = std::make_unique<FormMian>(d);
        // Not shown, the window starts its out-of-sight work as soon as events run.
        QCoreApplication::processEvents();
        return *window;
    }
    QString programPath() const { return dir.filePath(QStringLiteral("quillora")); }

    QTemporaryDir dir;
    StandinService service;
    FixedConnectivity connectivity{true};
    std::unique_ptr<Settings> settings;
    std::unique_ptr<TranslationEngine> engine;
    QList<NoticeRequest> notices;
    QStringList opened;  // addresses and links, in order
    QString openFailure; // the reason an address fails to open with, if any
    QList<FileDialogRequest> fileRequests;
    QString fileAnswer;
    QList<QStringList> started;
    std::function<int(QDialog*)> dialogAnswer;
    std::unique_ptr<FormMian> window; // last: it goes before what it uses
};

} // namespace quillora::test
