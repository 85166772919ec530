#pragma once

#include <QString>

namespace quillora
{

// $XDG_RUNTIME_DIR/quillora, else <temp>/quillora-<uid>; created 0700. A path that exists but is
// not a directory owned by the user (or is a symlink) is refused for a fresh private folder.
QString temporaryFolder();
// Same rule for an explicit preferred path (the seam tests use).
QString privateFolderAt(const QString& preferred);

} // namespace quillora
