#pragma once

#include "x11/ClipboardDesk.h"

namespace quillora::test
{

struct WlCopy : OtherPrograms {
    WlCopy() : OtherPrograms(true) {}
};

} // namespace quillora::test
