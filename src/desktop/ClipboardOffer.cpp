#include "desktop/ClipboardOffer.h"

#include <array>

namespace quillora::ClipboardOffer
{

namespace
{

// In the order they are asked for; the first ones are UTF-8 by definition.
constexpr std::array<const char*, 4> kTextTypes{"text/plain;charset=utf-8", "UTF8_STRING", "text/plain",
                                                "STRING"};
constexpr std::array<const char*, 2> kFileTypes{"text/uri-list", "x-special/gnome-copied-files"};

} // namespace

QList<QByteArray> typesConsidered()
{
    QList<QByteArray> types{kSecretHintType};
    for (const char* type : kFileTypes)
        types.append(type);
    for (const char* type : kTextTypes)
        types.append(type);
    return types;
}

QByteArray textType(const QList<QByteArray>& types)
{
    for (const char* files : kFileTypes)
        if (types.contains(QByteArray(files)))
            return {};
    for (const char* type : kTextTypes)
        if (types.contains(QByteArray(type)))
            return type;
    return {};
}

bool hasSecretHint(const QList<QByteArray>& types)
{
    return types.contains(QByteArray(kSecretHintType));
}

bool isSecret(const QByteArray& hint)
{
    return hint.trimmed() == "secret";
}

QString decode(const QByteArray& bytes, const QByteArray& type)
{
    // STRING is Latin-1 by the X conventions; everything else taken is UTF-8.
    return type == "STRING" ? QString::fromLatin1(bytes) : QString::fromUtf8(bytes);
}

} // namespace quillora::ClipboardOffer
