#include "core/code_page.h"

namespace velkoro {
namespace {

/// Takes one character off the front of `s`; -1 and one byte for a malformed sequence.
std::int32_t next_utf8(std::string_view& s)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned b = byte(0);
    const std::size_t n = b < 0x80                ? 1
                          : b >= 0xC2 && b < 0xE0 ? 2
                          : b >= 0xE0 && b < 0xF0 ? 3
                          : b >= 0xF0 && b < 0xF5 ? 4
                                                  : 0;
    std::uint32_t u = n == 1 ? b : n == 2 ? b & 0x1F : n == 3 ? b & 0x0F : b & 0x07;
    bool good = n != 0 && n <= s.size();
    for (std::size_t k = 1; good && k < n; ++k) {
        good = (byte(k) & 0xC0) == 0x80;
        u = (u << 6) | (byte(k) & 0x3FU);
    }
    if (good && ((n == 3 && u < 0x800) || (n == 4 && (u < 0x10000 || u > 0x10FFFF)) ||
                 (u >= 0xD800 && u < 0xE000)))
        good = false;
    s.remove_prefix(good ? n : 1);
    return good ? static_cast<std::int32_t>(u) : -1;
}

} // namespace

std::string to_utf8(std::string_view bytes)
{
    std::string out;
    out.reserve(bytes.size() + bytes.size() / 8);
    for (const char ch : bytes) {
        const auto b = static_cast<unsigned char>(ch);
        const unsigned u = b >= 0x80 && b < 0xA0 ? cp1252_high[b - 0x80U] : b;
        if (u < 0x80) {
            out += static_cast<char>(u);
        } else if (u < 0x800) {
            out += static_cast<char>(0xC0U | (u >> 6));
            out += static_cast<char>(0x80U | (u & 0x3FU));
        } else {
            out += static_cast<char>(0xE0U | (u >> 12));
            out += static_cast<char>(0x80U | ((u >> 6) & 0x3FU));
            out += static_cast<char>(0x80U | (u & 0x3FU));
        }
    }
    return out;
}

std::string from_utf8(std::string_view utf8, std::size_t* unmapped)
{
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const std::int32_t u = next_utf8(utf8);
        const int c = u < 0 ? -1 : cp1252_byte(static_cast<char32_t>(u));
        if (c < 0 && unmapped != nullptr)
            ++*unmapped;
        out += c < 0 ? '?' : static_cast<char>(c);
    }
    return out;
}

bool is_utf8(std::string_view bytes)
{
    while (!bytes.empty())
        if (next_utf8(bytes) < 0)
            return false;
    return true;
}

} // namespace velkoro
