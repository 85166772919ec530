// Another program's clipboard offer: the first line is the password managers' hint content, the
// other lines the types offered.
#include "FuzzCheck.h"
#include "desktop/ClipboardOffer.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace quillora;
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    QList<QByteArray> types = bytes.split('\n');
    const QByteArray hint = types.takeFirst();

    const QByteArray type = ClipboardOffer::textType(types);
    fuzzCheck(type.isEmpty() || types.contains(type), "the text type read is one offered");
    if (types.contains("text/uri-list") || types.contains("x-special/gnome-copied-files"))
        fuzzCheck(type.isEmpty(), "files are never read as text");
    fuzzCheck(ClipboardOffer::isSecret(hint) == (hint.trimmed() == "secret"),
              "only the hint secret is secret");
    const QString text = ClipboardOffer::decode(hint, type);
    fuzzCheck(type != "STRING" || text.size() == hint.size(), "STRING is one character per byte");
    return 0;
}
