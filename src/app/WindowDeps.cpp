#include "app/WindowDeps.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QFileInfo>
#include <QProcess>
#include <QUrl>

namespace quillora
{

namespace
{

QMessageBox::StandardButton showMessageBox(QWidget* owner, const NoticeRequest& request)
{
    QMessageBox box(request.icon, request.title, request.text, request.buttons,
                    request.owned ? owner : nullptr);
    return QMessageBox::StandardButton(box.exec());
}

QString chooseWithDialog(QWidget* owner, const FileDialogRequest& request)
{
    QFileDialog dialog(owner, request.title);
    // Each filter's own text is what the user reads, its case-free patterns are for the matching.
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(request.nameFilters);
    if (request.mode == FileDialogRequest::Save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setDefaultSuffix(request.defaultSuffix);
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
}

} // namespace

FormMianDeps withDefaults(FormMianDeps deps)
{
    if (!deps.notice)
        deps.notice = showMessageBox;
    if (deps.programPath.isEmpty())
        deps.programPath = QCoreApplication::applicationFilePath();
    if (!deps.openUrl)
        deps.openUrl = [](const QUrl& url) { return QDesktopServices::openUrl(url); };
    if (!deps.openAddress) {
        // QUrl would re-encode what the user typed; the browser gets the text as built.
        deps.openAddress = [open = deps.openUrl](const QString& address, const OpenFailed& failed) {
            openWithDesktop(address, open, failed);
        };
    }
    if (!deps.chooseFile)
        deps.chooseFile = chooseWithDialog;
    if (!deps.runDialog)
        deps.runDialog = [](QDialog* dialog) { return dialog->exec(); };
    if (!deps.startProgram) {
        deps.startProgram = [](const QString& program, const QStringList& arguments) {
            return QProcess::startDetached(program, arguments, QFileInfo(program).absolutePath());
        };
    }
    return deps;
}

} // namespace quillora
