/// Windows-1252 and UTF-8.
/// Text inside the program is Windows-1252, one byte a character, so that lengths, positions and
/// limits count characters and file and wire bytes need no conversion. UTF-8 exists in source
/// literals, at the widgets, on the command line and in JSON; these are the only converters. Source
/// of the table: the Unicode Consortium's mapping file CP1252.TXT; the five bytes it leaves free
/// (81, 8D, 8F, 90, 9D) map to the control characters of the same number, as browsers do, so that
/// every byte string survives the way to UTF-8 and back.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velkoro {

/// Unicode values of the bytes 80 to 9F; every other byte is its own Unicode value.
inline constexpr std::array<char16_t, 32> cp1252_high = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// The byte of a Unicode value, or -1 when the code page lacks it.
constexpr int cp1252_byte(char32_t u)
{
    if (u < 0x80 || (u >= 0xA0 && u < 0x100))
        return static_cast<int>(u);
    for (std::size_t i = 0; i < cp1252_high.size(); ++i)
        if (cp1252_high[i] == u)
            return static_cast<int>(0x80 + i);
    return -1;
}

/// Converts Windows-1252 bytes to UTF-8. Every input is valid.
std::string to_utf8(std::string_view bytes);

/// Converts UTF-8 to Windows-1252. Characters outside the code page and malformed sequences become
/// "?". `unmapped`, when given, grows by the number of such characters.
std::string from_utf8(std::string_view utf8, std::size_t* unmapped = nullptr);

/// True when the bytes are well-formed UTF-8 (shortest forms, no surrogates, at most U+10FFFF).
bool is_utf8(std::string_view bytes);

namespace detail {
template <std::size_t N> struct utf8_literal {
    char bytes[N]{};
    std::size_t size = 0;
    // Runs at compile time: a literal with a character outside the code page does not compile.
    consteval utf8_literal(const char (&s)[N])
    {
        for (std::size_t i = 0; i + 1 < N;) {
            const auto b = static_cast<unsigned char>(s[i]);
            const std::size_t n = b < 0x80 ? 1 : b < 0xE0 ? 2 : 3;
            char32_t u = n == 1 ? b : b & (n == 2 ? 0x1F : 0x0F);
            for (std::size_t k = 1; k < n; ++k)
                u = (u << 6) | (static_cast<unsigned char>(s[i + k]) & 0x3F);
            const int c = cp1252_byte(u);
            if (c < 0)
                throw "a character of this literal is not in Windows-1252";
            bytes[size++] = static_cast<char>(c);
            i += n;
        }
    }
};
} // namespace detail

/// A source literal (UTF-8) as Windows-1252 text, converted at compile time: "übernehmen"_w.
template <detail::utf8_literal L> std::string operator""_w()
{
    return std::string(L.bytes, L.size);
}

} // namespace velkoro
