#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// A promise of the code under test that an input broke: abort, which libFuzzer and the replay both
// report as a crash with the input that caused it.
inline void fuzzCheck(bool holds, const char* promise)
{
    if (holds)
        return;
    std::fprintf(stderr, "broken promise: %s\n", promise);
    std::abort();
}

inline QString fuzzText(const uint8_t* data, size_t size)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
}

inline bool hasLoneSurrogate(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            return true;
    }
    return false;
}
