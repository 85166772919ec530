// The JSON answer of the service's current interface.
#include "FuzzCheck.h"
#include "translate/ResponseParser.h"

#include <QByteArray>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray body(reinterpret_cast<const char*>(data), qsizetype(size));
    const quillora::TranslationResult untouched{QStringLiteral("t"), QStringLiteral("r"),
                                                QStringLiteral("d")};
    quillora::TranslationResult result = untouched;
    if (!quillora::parseJsonResponse(body, &result)) {
        fuzzCheck(result == untouched, "a refused answer leaves the result alone");
        return 0;
    }
    fuzzCheck(result.dictionary.isEmpty() || result.dictionary.endsWith(QLatin1String("\r\n")),
              "the dictionary ends with a line break");
    fuzzCheck(quillora::parseJsonResponse(body, nullptr), "the result may be dropped");
    return 0;
}
