#include "app/DialogCommands.h"

#include "app/StringTable.h"
#include "desktop/Form2.h"
#include "desktop/ModFont.h"
#include "desktop/ModUniTxt.h"
#include "desktop/NameFilter.h"
#include "desktop/ResultsFile.h"
#include "net/FormAbout.h"
#include "translate/TranslationEngine.h"

#include <QUrl>

namespace quillora
{

bool DialogCommands::options(int language) const
{
    Form2 dialog(m_deps.settings, language, m_window);
    return m_deps.runDialog(&dialog) == QDialog::Accepted;
}

void DialogCommands::about(int language) const
{
    FormAbout dialog(language, m_window);
    m_deps.runDialog(&dialog);
}

FontSetting DialogCommands::chooseFont(const FontSetting& current, int language) const
{
    const FontSetting font = ChooseFontFor(current, language, m_window);
    m_deps.settings->setFontText(formatFont(font));
    return font;
}

std::optional<QString> DialogCommands::openTextFile(int language) const
{
    FileDialogRequest request;
    request.mode = FileDialogRequest::Open;
    request.title = StringTable::text(language, MenuOpen);
    request.nameFilters = {caseFreeNameFilter(QStringLiteral("Text (*.TXT;*.ini;*.inf;*.log)"),
                                              QStringLiteral("*.TXT;*.ini;*.inf;*.log")),
                           caseFreeNameFilter(QStringLiteral("All (*.*)"), QStringLiteral("*.*"))};
    const QString fileName = m_deps.chooseFile(m_window, request);
    if (fileName.isEmpty())
        return std::nullopt;
    QString content = ReadTextFile(fileName);
    if (trimBlanks(content).isEmpty())
        return std::nullopt;
    return content;
}

void DialogCommands::saveResults(int language, const ResultTexts& texts) const
{
    FileDialogRequest request;
    request.mode = FileDialogRequest::Save;
    request.title = StringTable::text(language, MenuSaveResults);
    request.nameFilters = {
        caseFreeNameFilter(QStringLiteral("Save as text file (*.TXT)"), QStringLiteral("*.TXT"))};
    request.defaultSuffix = QStringLiteral("txt");
    const QString fileName = m_deps.chooseFile(m_window, request);
    if (fileName.isEmpty())
        return;
    const WriteOutcome saved = saveResultsFile(fileName, texts);
    if (saved) {
        m_deps.openUrl(QUrl::fromLocalFile(fileName));
        return;
    }
    NoticeRequest failed;
    failed.title = StringTable::text(language, NoticeTitle);
    failed.text = StringTable::text(language, MsgWithReason)
                      .arg(StringTable::text(language, MsgSaveFailed), saved.reason);
    failed.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    failed.owned = false;
    m_deps.notice(m_window, failed);
}

} // namespace quillora
