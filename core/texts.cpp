#include "core/texts.h"

#include "core/files.h"
#include "core/form1.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/text_tools.h"
#include "core/trap.h"

#include <algorithm>
#include <array>
#include <set>

namespace velkoro {
namespace {

constexpr const char* res_name = "velkoro.res";
constexpr const char* source_name = "velkoro.txt";
constexpr const char* replacement_name = "velkoro.rep";
constexpr int may_be_empty = 12;

void tell(const std::string& line)
{
    platform.message({.text = line, .icon = icon::exclamation});
}

/// Position of the access mark; "&&" is a plain "&".
std::size_t find_access_mark(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == '&') {
            if (i + 1 >= text.size() || text[i + 1] != '&')
                return i;
            ++i;
        }
    return std::string_view::npos;
}

void replace_all(std::string& text, std::string_view from, std::string_view to)
{
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
}

/// The user's words; the access mark stays at its position, so that "&File" keeps a letter.
std::string with_replacements(std::string text)
{
    if (text_table.replacements.empty())
        return text;
    const std::size_t mark = find_access_mark(text);
    if (mark != std::string::npos)
        text.erase(mark, 1);
    for (const auto& [from, to] : text_table.replacements)
        replace_all(text, from, to);
    if (mark != std::string::npos)
        text.insert(std::min(mark, text.size()), 1, '&');
    return text;
}

void read_replacements()
{
    text_table.replacements.clear();
    const auto bytes = read_file(program_path(replacement_name));
    if (!bytes)
        return;
    std::size_t unmapped = 0;
    const std::string lines = source_text(*bytes, unmapped);
    for (std::string_view line : split_lines(lines)) {
        line = trim(line);
        if (line.find('\t') == std::string_view::npos)
            continue;
        const std::string_view from = next_field(line, '\t');
        if (!from.empty())
            text_table.replacements.emplace_back(from, line);
    }
}

void read_header(const res_table& table)
{
    if (table.header.empty() || trim(table.header[0]) != std::to_string(res_format))
        tell("Wrong res file for " + std::to_string(res_format));
    for (std::size_t i = 2; i < table.header.size(); ++i)
        text_table.languages.push_back(table.header[i]);
    if (text_table.language < 0 ||
        static_cast<std::size_t>(text_table.language) >= text_table.languages.size())
        text_table.language = 0;
}

std::string column_text(const std::vector<std::string>& fields, std::size_t column)
{
    const bool own = column < fields.size() && !fields[column].empty();
    std::string text = own ? fields[column] : fields[0];
    text = with_replacements(std::move(text));
    replace_all(text, "\\n", "\n");
    return text;
}

void read_rows(const res_table& table)
{
    const auto column = static_cast<std::size_t>(text_table.language);
    std::set<int> told;
    for (const auto& [number, fields] : table.rows) {
        if (number < 1)
            continue;
        const auto slot = static_cast<std::size_t>(number);
        if (slot >= text_table.texts.size())
            text_table.texts.resize(slot + 1);
        if (!text_table.texts[slot].empty() && told.insert(number).second)
            tell("Double text at " + std::to_string(number));
        text_table.texts[slot] = column_text(fields, column);
    }
}

std::string fill(const std::string& text, const std::array<std::string_view, 3>& parameters)
{
    std::string out;
    std::size_t from = 0;
    for (const std::string_view p : parameters) {
        const std::size_t mark = text.find('#', from);
        if (mark == std::string::npos)
            break;
        out.append(text, from, mark - from);
        out += p;
        from = mark + 1;
    }
    return out.append(text, from);
}

bool has_caption(kind k)
{
    return k == kind::label || k == kind::button || k == kind::frame || k == kind::check ||
           k == kind::option || k == kind::menu;
}

/// "n" or "n m"; 0 for a missing number.
std::pair<int, int> tag_numbers(std::string tag)
{
    const std::string caption = cut_token(tag, " ");
    return {to_i32(val(caption)), to_i32(val(tag))};
}

std::string without_access_mark(const std::string& caption)
{
    std::string out;
    for (std::size_t i = 0; i < caption.size(); ++i) {
        if (caption[i] == '&' && (++i == caption.size()))
            break;
        out += caption[i];
    }
    return out;
}

} // namespace

std::string text(int number, std::string_view p1, std::string_view p2, std::string_view p3)
{
    if (number < 1)
        return {};
    if (text_table.loaded != text_table.language)
        texts_load();
    const auto slot = static_cast<std::size_t>(number);
    const bool known = slot < text_table.texts.size() && !text_table.texts[slot].empty();
    if (known)
        return fill(text_table.texts[slot], {p1, p2, p3});
    if (number == may_be_empty)
        return {};
    const std::string missing = "Missing text " + std::to_string(number);
    if (text_table.generator)
        tell(missing);
    return missing;
}

std::string text(int number, long long p1)
{
    return text(number, std::to_string(p1));
}

std::string text(int number, long long p1, long long p2)
{
    return text(number, std::to_string(p1), std::to_string(p2));
}

answer say(int number, enum buttons b, enum icon i, std::string_view p1, std::string_view p2,
           std::string_view p3)
{
    return platform.message(
        {.text = text(number, p1, p2, p3), .buttons = b, .icon = i, .number = number});
}

void texts_load()
try {
    text_table.texts.clear();
    text_table.languages.clear();
    text_table.loaded = -1;
    text_table.language = std::max(text_table.language, 0);
    if (folders.program.empty()) // there is no place yet where the table could be
        return;
    text_table.loaded = text_table.language; // a table that fails is not tried at every text
    read_replacements();
    if (text_table.regenerate)
        texts_regenerate();
    const auto bytes = read_file(program_path(res_name));
    if (!bytes) {
        tell("File velkoro.res not found");
        return;
    }
    const res_table table = res_decode(*bytes);
    read_header(table);
    text_table.loaded = text_table.language;
    read_rows(table);
} catch (...) {
    trap("texts_load");
}

void texts_regenerate()
{
    const std::string source = program_path(source_name), target = program_path(res_name);
    const std::int64_t source_time = file_time(source);
    if (source_time < 0 || file_time(target) >= source_time)
        return;
    if (platform.message({.text = "File velkoro.res updated",
                          .buttons = buttons::ok_cancel,
                          .icon = icon::question}) != answer::ok)
        return;
    write_file(target, res_build(read_file(source).value_or("")));
    platform.beep();
}

void translate_form(window& w)
{
    const bool main = &w == &Form1.form;
    if (!w.controls.empty() && (w.back == own_colour || w.back == list_back_blue))
        w.back = settings.list_back;
    if (const auto [caption, tip] = tag_numbers(w.tag); caption > 0)
        w.caption = main ? text(caption) : without_access_mark(text(caption));
    for (control* c : w.controls) {
        const auto [caption, tip] = tag_numbers(c->tag);
        if (caption > 0 && has_caption(c->kind))
            c->caption = text(caption);
        if (tip > 0)
            c->tooltip = text(tip);
    }
    if (main)
        settings_show(); // the receiver menu bears the maker's name
    if (w.translated)
        w.translated();
}

void translate_all()
{
    for (std::size_t i = 0; i < all_windows().size(); ++i) // `translated` may open windows
        translate_form(*all_windows()[i]);
}

} // namespace velkoro
