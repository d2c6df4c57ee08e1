#include "core/res_file.h"

#include "core/byte_io.h"
#include "core/code_page.h"
#include "core/text_tools.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr std::size_t longest_row = 32767; // what the length field holds
constexpr int highest_number = 32767;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

std::string rotated(std::string_view text, unsigned char (*rotate)(unsigned char))
{
    std::string out(text);
    for (char& c : out)
        c = static_cast<char>(rotate(static_cast<unsigned char>(c)));
    return out;
}

std::vector<std::string> tab_fields(std::string_view text)
{
    std::vector<std::string> fields;
    while (true) {
        const std::size_t tab = text.find('\t');
        fields.emplace_back(text.substr(0, tab));
        if (tab == std::string_view::npos)
            return fields;
        text.remove_prefix(tab + 1);
    }
}

[[noreturn]] void bad_line(std::size_t line, const char* what)
{
    throw std::runtime_error("line " + std::to_string(line) + ": " + what);
}

void write_text(byte_writer& out, std::string_view text, std::size_t line)
{
    if (text.size() > longest_row)
        bad_line(line, "text too long");
    out.lstr(rotated(text, res_scramble));
}

std::int16_t text_number(std::string_view field, std::size_t line)
{
    field = trim(field);
    int number = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    if (error != std::errc() || end != field.data() + field.size() || number < 1 ||
        number > highest_number)
        bad_line(line, "no text number from 1 to 32767 at its start");
    return static_cast<std::int16_t>(number);
}

bool unmapped_character(std::string_view line)
{
    std::size_t unmapped = 0;
    from_utf8(line, &unmapped);
    return unmapped != 0;
}

} // namespace

unsigned char res_scramble(unsigned char c)
{
    return static_cast<unsigned char>(c / 4U + (c & 3U) * 64U);
}

unsigned char res_unscramble(unsigned char c)
{
    return static_cast<unsigned char>(((c * 4U) & 255U) + (c * 4U) / 256U);
}

res_table res_decode(std::string_view bytes)
{
    byte_reader in(bytes);
    res_table table;
    const std::string header = rotated(in.lstr(), res_unscramble);
    if (!in.ok()) {
        table.damaged = true;
        return table;
    }
    table.header = tab_fields(header);
    while (!in.at_end()) {
        const int number = in.i16();
        const std::string_view text = in.lstr();
        if (!in.ok()) {
            table.damaged = true;
            break;
        }
        table.rows.emplace_back(number, tab_fields(rotated(text, res_unscramble)));
    }
    return table;
}

std::string res_build(std::string_view source)
{
    std::size_t unmapped = 0;
    const std::string text = source_text(source, unmapped);
    if (unmapped != 0) {
        const std::vector<std::string_view> lines = split_lines(source);
        const auto bad = std::ranges::find_if(lines, unmapped_character);
        bad_line(static_cast<std::size_t>(bad - lines.begin()) + 1,
                 "a character is not in Windows-1252");
    }
    const std::vector<std::string_view> lines = split_lines(text);
    if (lines.empty() || trim(lines[0]).empty())
        bad_line(1, "no header");
    byte_writer out;
    write_text(out, lines[0], 1);
    for (std::size_t i = 1; i < lines.size(); ++i) {
        std::string_view rest = lines[i];
        if (trim(rest).empty())
            continue;
        if (rest.find('\t') == std::string_view::npos)
            bad_line(i + 1, "no tab");
        out.i16(text_number(next_field(rest, '\t'), i + 1));
        next_field(rest, '\t'); // the comment
        write_text(out, rest, i + 1);
    }
    return out.out;
}

std::string source_text(std::string_view bytes, std::size_t& unmapped)
{
    const bool marked = bytes.starts_with(byte_order_mark);
    if (marked)
        bytes.remove_prefix(byte_order_mark.size());
    const bool ascii =
        std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    if (ascii || (!marked && !is_utf8(bytes)))
        return std::string(bytes);
    return from_utf8(bytes, &unmapped);
}

} // namespace velkoro
