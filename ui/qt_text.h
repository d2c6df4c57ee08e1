/// Text at the widgets: Windows-1252 bytes of the records to QString and back, captions with their
/// access letters.
#pragma once

#include "core/code_page.h"

#include <QString>

#include <string>
#include <string_view>

namespace velkoro {

/// Windows-1252 bytes as a QString. Every input is valid.
inline QString to_q(std::string_view bytes)
{
    QString q(static_cast<qsizetype>(bytes.size()), Qt::Uninitialized);
    QChar* to = q.data();
    for (const char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        *to++ = b >= 0x80 && b < 0xA0 ? QChar(cp1252_high[b - 0x80U]) : QChar(b);
    }
    return q;
}

/// A QString as Windows-1252 bytes; characters outside the code page become "?".
inline std::string from_q(const QString& q)
{
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(q.size()));
    for (qsizetype i = 0; i < q.size(); ++i) {
        if (q[i].isLowSurrogate())
            continue; // its high half has given the "?"
        const int b = cp1252_byte(q[i].unicode());
        bytes += b < 0 ? '?' : static_cast<char>(b);
    }
    return bytes;
}

/// A caption for a widget that knows access letters. "&&" stays a literal sign, and so does an "&"
/// before a blank or at the end, which would otherwise make a blank the access letter.
inline QString caption_q(std::string_view caption)
{
    QString q = to_q(caption);
    for (qsizetype i = 0; i < q.size(); ++i)
        if (q[i] == QLatin1Char('&')) {
            if (i + 1 == q.size() || q[i + 1].isSpace())
                q.insert(i, QLatin1Char('&'));
            ++i;
        }
    return q;
}

/// A caption without its access letter, for widgets that know none and for tool tips.
inline QString plain_q(std::string_view caption)
{
    const QString q = caption_q(caption);
    QString plain;
    for (qsizetype i = 0; i < q.size(); ++i) {
        if (q[i] == QLatin1Char('&') && i + 1 < q.size())
            ++i;
        plain += q[i];
    }
    return plain;
}

} // namespace velkoro
