#include "core/symbols.h"

#include "core/files.h"
#include "core/num_text.h"
#include "core/platform.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/texts.h"
#include "core/trap.h"

#include <algorithm>
#include <charconv>

namespace velkoro {
namespace {

constexpr std::string_view unused = "??";
constexpr std::uint16_t flag_raw = 1, flag_new = 2;
constexpr int highest_number = 32767;
constexpr int text_missing_table = 7700, text_ask_extend = 7701;

bool has_table(int level)
{
    return level == 2 || level == 3;
}

std::string table_name(int level)
{
    return "SYMBOL_" + std::to_string(level) + ".INI";
}

/// The whole field as a number of that base in 0 to `most`.
std::optional<int> whole_number(std::string_view field, int base, int most)
{
    int number = -1;
    const auto [end, error] =
        std::from_chars(field.data(), field.data() + field.size(), number, base);
    if (error != std::errc() || end != field.data() + field.size() || number < 0 || number > most)
        return std::nullopt;
    return number;
}

void put_row(symbol_state& into, int number, const symbol_row& row)
{
    const auto slot = static_cast<std::size_t>(number);
    if (slot >= into.rows.size())
        into.rows.resize(slot + 1);
    if (into.rows[slot].name != unused) // a repeat: the last line stands
        std::erase(into.order, number);
    into.rows[slot] = row;
    if (row.name != unused)
        into.order.push_back(number);
}

void index_names(symbol_state& into)
{
    into.by_name.clear();
    for (std::size_t n = 0; n < into.rows.size(); ++n)
        if (into.rows[n].name != unused)
            into.by_name.emplace(into.rows[n].name, static_cast<int>(n));
}

void parse_line(std::string_view line, symbol_state& into)
{
    line = trim(line);
    std::string_view token = next_field(line, ' ');
    const std::string_view name = trim(line);
    const bool has_raw = token.find(':') != std::string_view::npos;
    const auto number = whole_number(next_field(token, ':'), 10, highest_number);
    const auto raw = has_raw ? whole_number(token, 16, 0xFFFF) : number;
    if (!number || !raw || name.empty())
        return;
    put_row(into, *number,
            {.name = std::string(name),
             .raw = static_cast<std::uint16_t>(*raw),
             .flags = has_raw ? flag_raw : std::uint16_t{0}});
}

const symbol_row* used_row(int number)
{
    if (number < 0 || static_cast<std::size_t>(number) >= symbols.rows.size())
        return nullptr;
    const symbol_row& row = symbols.rows[static_cast<std::size_t>(number)];
    return row.name == unused ? nullptr : &row;
}

std::string hex(int value)
{
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, 16).ptr;
    return upper(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

/// The table's file gets a line; the row stands in memory even when that fails.
void append_line(const std::string& line)
try {
    const std::string path = program_path(table_name(symbols.level));
    const std::string bytes = read_file(path).value_or("");
    const bool open_line = !bytes.empty() && bytes.back() != '\n' && bytes.back() != '\r';
    append_file(path, (open_line ? "\r\n" : "") + line + "\r\n");
} catch (...) {
    trap("symb_ext");
}

/// Adds a row behind the last one and its line to the file. Returns its number.
int extend_table(int raw)
{
    const int number = static_cast<int>(symbols.rows.size());
    const std::string name = "<" + std::to_string(raw) + ">";
    put_row(symbols, number,
            {.name = name,
             .raw = static_cast<std::uint16_t>(raw),
             .flags = static_cast<std::uint16_t>(flag_raw | flag_new)});
    symbols.by_name.emplace(name, number);
    append_line(pic(number, "00") + ":" + hex(raw) + " " + name);
    return number;
}

} // namespace

void symbols_load()
try {
    const int level = has_table(settings.symbol_level) ? settings.symbol_level : 0;
    if (level == symbols.level)
        return;
    symbols = {.level = level, .extend = symbols.extend}; // the answer holds for the run
    if (level == 0)
        return;
    const auto bytes = read_file(program_path(table_name(level)));
    if (bytes)
        symbols_parse(*bytes, symbols);
    else
        say(text_missing_table, buttons::ok, icon::critical, table_name(level),
            shown_path(folders.program));
} catch (...) {
    trap("symbols_load");
}

void symbols_parse(std::string_view text, symbol_state& into)
{
    into.rows.clear();
    into.order.clear();
    for (const std::string_view line : split_lines(text))
        parse_line(line, into);
    index_names(into);
}

std::string symb_ext(int number)
{
    if (number < 0 || static_cast<std::size_t>(number) >= symbols.rows.size())
        return "?";
    return symbols.rows[static_cast<std::size_t>(number)].name;
}

int symb_ext(std::string_view name)
{
    const auto hit = symbols.by_name.find(name);
    return hit == symbols.by_name.end() ? -1 : hit->second;
}

int symb_from_receiver(int raw)
{
    const auto hit = std::ranges::find_if(
        symbols.rows, [&](const symbol_row& r) { return r.raw == raw && r.name != unused; });
    if (hit != symbols.rows.end())
        return static_cast<int>(hit - symbols.rows.begin());
    // Without a table there is nothing to extend; a file of one new line would keep the shipped
    // table away for good.
    const bool room = !symbols.rows.empty() && symbols.rows.size() <= highest_number;
    if (!room || raw < 0 || raw > 0xFFFF || !has_table(symbols.level))
        return raw;
    if (!symbols.extend)
        symbols.extend = say(text_ask_extend, buttons::yes_no, icon::question,
                             table_name(symbols.level)) == answer::yes;
    return *symbols.extend ? extend_table(raw) : raw;
}

int symb_to_receiver(int number)
{
    const symbol_row* row = used_row(number);
    return row == nullptr ? number : row->raw;
}

void symb_list(control& list)
{
    list.items.clear();
    list.rows.rows.clear();
    for (const int number : symbols.order) {
        list.items.push_back(symb_ext(number));
        list.rows.rows.push_back({.data = number, .cells = {symb_ext(number)}});
    }
    list.rows.changed();
    list.enabled = has_table(symbols.level);
}

} // namespace velkoro
