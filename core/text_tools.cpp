#include "core/text_tools.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace velkoro {
namespace {

constexpr std::array<char, 256> make_case_table(bool to_upper)
{
    std::array<char, 256> t{};
    for (unsigned c = 0; c < 256; ++c)
        t[c] = static_cast<char>(c);
    const auto pair = [&](unsigned up, unsigned low) {
        if (to_upper)
            t[low] = static_cast<char>(up);
        else
            t[up] = static_cast<char>(low);
    };
    for (unsigned c = 'A'; c <= 'Z'; ++c)
        pair(c, c + 32);
    for (unsigned c = 0xC0; c <= 0xDE; ++c)
        if (c != 0xD7)
            pair(c, c + 32);
    pair(0x8A, 0x9A); // S caron
    pair(0x8C, 0x9C); // OE
    pair(0x8E, 0x9E); // Z caron
    pair(0x9F, 0xFF); // Y diaeresis
    return t;
}

constexpr auto upper_table = make_case_table(true);
constexpr auto lower_table = make_case_table(false);

bool is_blank(char c)
{
    return c == ' ';
}

} // namespace

std::string cut_token(std::string& text, std::string_view separator)
{
    const std::size_t at = separator.empty() ? std::string::npos : text.find(separator);
    std::string token = text.substr(0, at);
    if (at == std::string::npos)
        text.clear();
    else
        text.erase(0, at + separator.size());
    return token;
}

std::string_view next_field(std::string_view& text, char delimiter)
{
    const std::size_t at = text.find(delimiter);
    const std::string_view field = text.substr(0, at);
    text = at == std::string_view::npos ? std::string_view{} : text.substr(at + 1);
    return field;
}

std::string_view trim_left(std::string_view text)
{
    while (!text.empty() && is_blank(text.front()))
        text.remove_prefix(1);
    return text;
}

std::string_view trim_right(std::string_view text)
{
    while (!text.empty() && is_blank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string_view trim(std::string_view text)
{
    return trim_left(trim_right(text));
}

char upper(char c)
{
    return upper_table[static_cast<unsigned char>(c)];
}

char lower(char c)
{
    return lower_table[static_cast<unsigned char>(c)];
}

std::string upper(std::string_view text)
{
    std::string out(text);
    std::ranges::transform(out, out.begin(), [](char c) { return upper(c); });
    return out;
}

std::string lower(std::string_view text)
{
    std::string out(text);
    std::ranges::transform(out, out.begin(), [](char c) { return lower(c); });
    return out;
}

bool equal_nocase(std::string_view a, std::string_view b)
{
    return std::ranges::equal(a, b, [](char x, char y) { return lower(x) == lower(y); });
}

bool ends_with_nocase(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && equal_nocase(text.substr(text.size() - end.size()), end);
}

std::size_t find_nocase(std::string_view text, std::string_view part)
{
    const auto same = [](char x, char y) { return lower(x) == lower(y); };
    const auto hit = std::search(text.begin(), text.end(), part.begin(), part.end(), same);
    return hit == text.end() && !part.empty() ? std::string_view::npos
                                              : static_cast<std::size_t>(hit - text.begin());
}

std::vector<std::string> list_tokens(std::string_view list)
{
    std::vector<std::string> tokens;
    while (!list.empty())
        tokens.emplace_back(next_field(list, '$'));
    return tokens;
}

std::string fixed_text(std::string_view text, std::size_t n)
{
    std::string out(text.substr(0, n));
    out.resize(n, ' ');
    return out;
}

std::vector<std::string_view> split_lines(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t at = text.find_first_of("\r\n");
        lines.push_back(text.substr(0, at));
        if (at == std::string_view::npos)
            break;
        const bool crlf = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
        text.remove_prefix(at + (crlf ? 2 : 1));
    }
    return lines;
}

} // namespace velkoro
