#include "net/UpdateCheck.h"

#include "Version.h"
#include "app/StartupCommand.h"
#include "app/StringTable.h"
#include "net/Connectivity.h"
#include "net/Http.h"
#include "net/MakerLists.h"
#include "net/WebLink.h"

#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSaveFile>
#include <QTimer>
#include <unistd.h>

namespace quillora
{

UpdateCheck::UpdateCheck(UpdateCheckDeps deps, QObject* parent)
    : QObject(parent), m_deps(std::move(deps)), m_timer(new QTimer(this)), m_http(new HttpClient(this))
{
    m_timer->setObjectName(QStringLiteral("Timer2"));
    m_timer->setInterval(kDelayMs);
    connect(m_timer, &QTimer::timeout, this, &UpdateCheck::Timer2_Timer);
    m_timer->start();
}

void UpdateCheck::Timer2_Timer()
{
    m_timer->stop();
    if (!m_deps.connectivity->isOnline()) {
        m_deps.notice(MsgNotConnected, QMessageBox::Warning, QMessageBox::Ok);
        Q_EMIT finished();
        return;
    }
    m_http->get(m_deps.addresses.updateList(), [this](const HttpReply& reply) {
        // The notice lets the window run on; it may be gone when the answer comes.
        const QPointer<UpdateCheck> alive(this);
        listArrived(urlBytesText(reply, true));
        if (alive)
            Q_EMIT finished();
    });
}

void UpdateCheck::listArrived(const QString& text)
{
    if (text.isEmpty())
        return;
    const UpdateList list = parseUpdateList(text);

    const QFileInfo program(m_deps.programPath);
    const QString updater = updaterPath(program.absolutePath());
    if (QFileInfo::exists(updater))
        QFile::remove(updater);

    if (!isNewerVersion(versionText(), list.version))
        return;
    const QPointer<UpdateCheck> alive(this);
    const QMessageBox::StandardButton answer =
        m_deps.notice(MsgNewVersion, QMessageBox::Information, QMessageBox::Ok | QMessageBox::Cancel);
    if (!alive)
        return;
    if (answer != QMessageBox::Ok) {
        m_deps.openUrl(m_deps.addresses.productHome());
        return;
    }
    // A program the package manager put where the user cannot write is not the user's to replace:
    // the download page opens instead and the program stays.
    if (::access(QFile::encodeName(program.absolutePath()).constData(), W_OK) != 0) {
        if (!openWebAddress(QUrl(list.download), m_deps.openUrl))
            m_deps.openUrl(m_deps.addresses.productHome());
        return;
    }
    if (writeUpdater(updater))
        m_deps.startProgram(updater, {program.completeBaseName()});
    m_deps.exitProgram();
}

// Byte for byte as built, plus the execute bit Linux needs to run it.
bool UpdateCheck::writeUpdater(const QString& path) const
{
    QFile resource(kUpdaterResource);
    if (!resource.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = resource.readAll();
    QSaveFile out(path);
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.commit())
        return false;
    return QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                           QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther |
                                           QFile::ExeOther);
}

} // namespace quillora
