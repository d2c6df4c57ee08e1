#include "core/ini_file.h"

#include "core/code_page.h"
#include "core/files.h"
#include "core/num_text.h"
#include "core/settings.h"
#include "core/text_tools.h"

#include <algorithm>
#include <exception>
#include <sys/stat.h>

namespace velkoro {
namespace {

constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

std::string_view trim_white(std::string_view s)
{
    const auto white = [](char c) {
        return c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\0';
    };
    while (!s.empty() && white(s.front()))
        s.remove_prefix(1);
    while (!s.empty() && white(s.back()))
        s.remove_suffix(1);
    return s;
}

bool quoted(std::string_view s)
{
    return s.size() >= 2 && (s.front() == '"' || s.front() == '\'') && s.back() == s.front();
}

std::string_view unquoted(std::string_view s)
{
    return quoted(s) ? trim_white(s.substr(1, s.size() - 2)) : s;
}

/// A value as it can stand on a line and is read back the same.
std::string line_value(std::string_view value)
{
    std::string out(value);
    std::ranges::replace_if(
        out, [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    const std::string_view bare = trim_white(out);
    return quoted(bare) ? '"' + std::string(bare) + '"' : std::string(bare);
}

ini_line parse_line(std::string_view raw, const std::string& section, bool in_section)
{
    ini_line line{.raw = std::string(raw)};
    const std::string_view s = trim_white(raw);
    const std::size_t close = s.rfind(']');
    if (s.starts_with('[') && close != std::string_view::npos) {
        line.heading = true;
        line.section = trim_white(s.substr(1, close - 1));
        return line;
    }
    const std::size_t equal = s.find('=');
    if (!in_section || s.starts_with(';') || equal == std::string_view::npos)
        return line;
    const std::string_view key = trim_white(s.substr(0, equal));
    if (!key.empty()) {
        line.section = section;
        line.key = key;
        line.value = unquoted(trim_white(s.substr(equal + 1)));
    }
    return line;
}

// The file behind the keys
// ------------------------------------------------------------------------------------------------

struct file_stamp {
    std::int64_t time_ns = -1, size = -1, id = 0;
};

file_stamp stamp_of(const std::string& path)
{
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0)
        return {};
    return {static_cast<std::int64_t>(st.st_mtim.tv_sec) * 1'000'000'000 + st.st_mtim.tv_nsec,
            static_cast<std::int64_t>(st.st_size), static_cast<std::int64_t>(st.st_ino)};
}

void remember(const file_stamp& s)
{
    ini_file.time_ns = s.time_ns;
    ini_file.size = s.size;
    ini_file.id = s.id;
}

/// Brings ini_file.lines up to date with the file.
void refresh()
{
    if (settings.ini_path.empty()) { // no file: the keys live in memory
        if (!ini_file.path.empty())
            ini_file = {};
        return;
    }
    const std::string path = real_path(settings.ini_path);
    const file_stamp now = stamp_of(path);
    const bool same = path == ini_file.path && now.time_ns == ini_file.time_ns &&
                      now.size == ini_file.size && now.id == ini_file.id;
    if (same)
        return;
    ini_file = {.path = path};
    remember(now);
    const auto bytes = read_file(path);
    ini_file.locked = !bytes && now.time_ns >= 0;
    ini_file.lines = ini_parse(bytes.value_or(""));
}

void save_lines()
{
    if (ini_file.path.empty() || ini_file.locked)
        return;
    try {
        write_file(ini_file.path, ini_text(ini_file.lines));
    } catch (const std::exception&) {
        // The change holds for this run; a settings file that cannot be written stops nothing.
    }
    remember(stamp_of(ini_file.path));
}

using line_iterator = std::vector<ini_line>::iterator;

line_iterator find_heading(std::string_view section, line_iterator from)
{
    return std::find_if(from, ini_file.lines.end(), [&](const ini_line& l) {
        return l.heading && equal_nocase(l.section, section);
    });
}

line_iterator section_end(line_iterator heading)
{
    return std::find_if(heading + 1, ini_file.lines.end(),
                        [](const ini_line& l) { return l.heading; });
}

/// The key's line in the first section of the name, or the end of the lines.
line_iterator find_key(std::string_view section, std::string_view key)
{
    const auto end = ini_file.lines.end();
    const auto heading = find_heading(section, ini_file.lines.begin());
    if (heading == end)
        return end;
    const auto stop = section_end(heading);
    const auto hit = std::find_if(heading + 1, stop,
                                  [&](const ini_line& l) { return equal_nocase(l.key, key); });
    return hit == stop ? end : hit;
}

void set_key(std::string_view section, std::string_view key, std::string_view value)
{
    const std::string text = line_value(value);
    const std::string name(trim_white(key));
    const ini_line line{.section = std::string(section),
                        .key = name,
                        .value = std::string(unquoted(text)),
                        .raw = name + "=" + text};
    if (const auto hit = find_key(section, name); hit != ini_file.lines.end()) {
        hit->value = line.value;
        hit->raw = hit->key + "=" + text;
        return;
    }
    auto heading = find_heading(section, ini_file.lines.begin());
    if (heading == ini_file.lines.end()) {
        ini_file.lines.push_back({.section = std::string(section),
                                  .raw = "[" + std::string(section) + "]",
                                  .heading = true});
        heading = ini_file.lines.end() - 1;
    }
    auto place = section_end(heading);
    // Blank lines that part the sections stay behind the new key.
    while (place != heading + 1 && trim_white((place - 1)->raw).empty())
        --place;
    ini_file.lines.insert(place, line);
}

bool remove_section(std::string_view section)
{
    bool any = false;
    for (auto at = find_heading(section, ini_file.lines.begin()); at != ini_file.lines.end();
         at = find_heading(section, at)) {
        at = ini_file.lines.erase(at, section_end(at));
        any = true;
    }
    return any;
}

/// A section name that a heading can hold.
bool usable_section(std::string_view name)
{
    return !trim_white(name).empty() && name.find_first_of("\r\n") == std::string_view::npos;
}

/// A key that is found again on its line.
bool usable_key(std::string_view name)
{
    const std::string_view bare = trim_white(name);
    return usable_section(name) && bare.find('=') == std::string_view::npos &&
           !bare.starts_with('[') && !bare.starts_with(';');
}

} // namespace

std::vector<ini_line> ini_parse(std::string_view text)
{
    std::string converted;
    if (text.starts_with(byte_order_mark)) {
        // Several may stand there when programs put theirs in front; one left would be taken for
        // ours when the file is read again.
        while (text.starts_with(byte_order_mark))
            text.remove_prefix(byte_order_mark.size());
        if (is_utf8(text)) {
            converted = from_utf8(text);
            text = converted;
        }
    }
    std::vector<ini_line> lines;
    std::string section;
    bool in_section = false;
    for (const std::string_view raw : split_lines(text)) {
        lines.push_back(parse_line(raw, section, in_section));
        if (lines.back().heading) {
            section = lines.back().section;
            in_section = true;
        }
    }
    return lines;
}

std::string ini_text(const std::vector<ini_line>& lines)
{
    std::string out;
    for (const ini_line& l : lines)
        out += l.raw + "\r\n";
    return out;
}

std::string ini_get(std::string_view section, std::string_view key)
{
    const auto own = settings.overrides.find({lower(section), lower(key)});
    std::string value;
    if (own != settings.overrides.end()) {
        value = own->second;
    } else {
        refresh();
        if (const auto hit = find_key(section, key); hit != ini_file.lines.end())
            value = hit->value;
    }
    return std::string(trim_white(std::string_view(value).substr(0, ini_value_max)));
}

int ini_get_int(std::string_view section, std::string_view key, int fallback)
{
    const std::string text = ini_get(section, key);
    if (text.empty())
        return fallback;
    const double n = fix(val(text));
    return static_cast<int>(std::clamp(n, -2147483648.0, 2147483647.0));
}

void ini_put(std::string_view section, std::optional<std::string_view> key,
             std::optional<std::string_view> value)
{
    if (!usable_section(section) || (key && !usable_key(*key)))
        return;
    if (key) {
        const auto own = settings.overrides.find({lower(section), lower(*key)});
        if (own != settings.overrides.end()) {
            own->second = std::string(value.value_or(""));
            return;
        }
    }
    refresh();
    const std::vector<ini_line>& lines = ini_file.lines;
    bool changed = true;
    if (!key) {
        changed = remove_section(section);
    } else if (!value) {
        const auto hit = find_key(section, *key);
        changed = hit != lines.end();
        if (changed)
            ini_file.lines.erase(hit);
    } else {
        const auto hit = find_key(section, *key);
        changed = hit == lines.end() || hit->value != unquoted(line_value(*value));
        if (changed)
            set_key(section, *key, *value);
    }
    if (changed)
        save_lines();
}

std::vector<std::string> ini_keys(std::string_view section)
{
    refresh();
    std::vector<std::string> keys;
    const auto heading = find_heading(section, ini_file.lines.begin());
    if (heading == ini_file.lines.end())
        return keys;
    for (auto at = heading + 1, end = section_end(heading); at != end; ++at)
        if (!at->key.empty() && std::ranges::none_of(keys, [&](const std::string& k) {
                return equal_nocase(k, at->key);
            }))
            keys.push_back(at->key);
    return keys;
}

void ini_copy(std::string_view from, std::string_view to)
{
    if (!usable_section(to) || equal_nocase(from, to))
        return;
    std::vector<std::pair<std::string, std::string>> values;
    for (const std::string& key : ini_keys(from))
        values.emplace_back(key, find_key(from, key)->value);
    remove_section(to);
    for (const auto& [key, value] : values)
        set_key(to, key, value);
    save_lines();
}

} // namespace velkoro
