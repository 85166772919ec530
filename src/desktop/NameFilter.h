#pragma once

#include <QString>

namespace quillora
{

// A file chooser's filter entry from the text the user reads ("Text (*.TXT;*.ini)") and its patterns
// ("*.TXT;*.ini"). The text stays as it is; the patterns match names whatever their case, as they do on
// the desktop the program came from: GTK's and the portal's choosers compare letter by letter, so
// "*.TXT" goes to them as "*.[tT][xX][tT]". "*.*" means every file, as it did there.
QString caseFreeNameFilter(const QString& shown, const QString& patterns);

} // namespace quillora
