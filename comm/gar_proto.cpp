#include "comm/gar_proto.h"

#include "core/byte_io.h"
#include "core/hooks.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/symbols.h"
#include "core/text_tools.h"

#include <algorithm>
#include <initializer_list>
#include <stdexcept>

namespace velkoro {
namespace {

constexpr double no_limit = 32000;
constexpr double most_number = 65535;

bool one_of(int type, std::initializer_list<int> types)
{
    return std::ranges::find(types, type) != types.end();
}

std::uint16_t number_of(std::string_view digits)
{
    return static_cast<std::uint16_t>(std::clamp(fix(val(digits)), 0.0, most_number));
}

std::string three_digits(char tag, int number)
{
    return tag + pic(number, "000");
}

} // namespace

void gar_proto_filler::take(char tag, std::uint16_t number)
{
    constexpr unsigned last = 4; // highest column and row counted from the first of each
    switch (tag) {
    case 'L': table[0][0] = number; break;
    case 'A':
        column = number / 100U;
        if (column <= last)
            table[column + 1][0] = number;
        row = 0;
        break;
    case 'D':
        if (column <= last && row <= last) {
            if (row + 1 >= table[0].size())
                throw std::out_of_range("Subscript out of range");
            table[column + 1][row + 1] = number;
        }
        ++row;
        break;
    default: break;
    }
}

void gar_proto_from_array(std::string_view data, gar_table& into)
{
    gar_proto_filler fill(into);
    byte_reader in(data);
    while (in.remaining() >= 3) {
        const char tag = static_cast<char>(in.u8());
        fill.take(tag, in.le<std::uint16_t>());
    }
}

bool gar_proto_from_ini(std::string_view text, int product, int version, gar_table& into)
{
    for (std::string_view line : split_lines(text)) {
        line = trim(line);
        if (line.empty())
            return false;
        const std::string_view id = next_field(line, ' ');
        double limit = no_limit;
        line = trim_left(line);
        if (line.starts_with('<'))
            limit = round_even(val(next_field(line, ' ').substr(1)) * 100);
        if (number_of(id) != product || version >= limit)
            continue;
        gar_proto_filler fill(into);
        while (!line.empty())
            if (const std::string_view token = next_field(line, ' '); !token.empty())
                fill.take(token.front(), number_of(token.substr(1)));
        return true;
    }
    return false;
}

void gar_flags_set()
{
    const int w = receiver.gar_proto[2][1], x = receiver.gar_proto[5][1];
    receiver.gar_has_avd = receiver.gar_has_alt = one_of(w, {108, 109, 150, 151, 152, 154, 155});
    receiver.gar_has_prox =
        one_of(w, {101, 102, 104, 107, 108, 109, 151, 152, 154, 155}) || one_of(x, {400, 403, 450});
}

void gar_symbols_use(std::int16_t set)
{
    receiver.gar_symbol_set = set;
    settings.symbol_level = set == 0 ? 0 : set + 1;
    const int before = symbols.level;
    symbols_load();
    if (symbols.level != before)
        hooks.row_changed(-1, false);
}

std::string gar_proto_text(const gar_table& table)
{
    std::string out;
    const auto add = [&out](char tag, int number) {
        if (number != 0)
            out += (out.empty() ? "" : " ") + three_digits(tag, number);
    };
    add('L', table[0][0]);
    for (std::size_t column = 1; column < table.size(); ++column)
        for (std::size_t row = 0; row < table[column].size(); ++row)
            add(row == 0 ? 'A' : 'D', table[column][row]);
    return out;
}

} // namespace velkoro
