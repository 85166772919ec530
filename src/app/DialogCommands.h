#pragma once

#include "app/Settings.h"
#include "app/WindowDeps.h"

#include <optional>

namespace quillora
{

struct ResultTexts;

// The main window's commands that open a dialog: options, About, font, opening a text file and
// saving the results, through the window's seams so tests answer them.
class DialogCommands
{
public:
    DialogCommands(QWidget* window, const FormMianDeps& deps) : m_window(window), m_deps(deps) {}

    // True when the user stored new options.
    bool options(int language) const;
    void about(int language) const;
    // The chosen font is stored now and reaches the boxes at the next start.
    FontSetting chooseFont(const FontSetting& current, int language) const;
    // The chosen file's text, unless none was chosen or it is blank.
    std::optional<QString> openTextFile(int language) const;
    // Opens the saved file; a failure is said in a notice with the system's reason.
    void saveResults(int language, const ResultTexts& texts) const;

private:
    QWidget* m_window;
    const FormMianDeps& m_deps;
};

} // namespace quillora
