#include "interchange/geocaching.h"

#include "core/code_page.h"
#include "core/text_tools.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace velkoro {
namespace {

constexpr auto npos = std::string_view::npos;

bool is_space(char c)
{
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string_view trim_space(std::string_view text)
{
    while (!text.empty() && is_space(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && is_space(text.back()))
        text.remove_suffix(1);
    return text;
}

// Tags
// -------------------------------------------------------------------------------------------------

struct xml_tag {
    std::string_view name{};       // "coord", "/waypoint"
    std::string_view attributes{}; // what stands behind the name
    bool closed = false;           // ends in "/>"
};

/// Walks over a text by its tags; all places are offsets in it.
struct xml_walk {
    std::string_view text{};
    std::size_t at = 0;
};

/// Moves behind the end of a part that holds no tags; false at the end of the text.
bool skip_past(xml_walk& x, std::string_view end)
{
    const std::size_t found = x.text.find(end, x.at);
    x.at = found == npos ? x.text.size() : found + end.size();
    return found != npos;
}

/// The end of a tag: a ">" outside marks.
std::size_t tag_end(std::string_view text, std::size_t at)
{
    char mark = 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (mark != 0)
            mark = c == mark ? char{0} : mark;
        else if (c == '>')
            return at;
        else if (c == '"' || c == '\'')
            mark = c;
    }
    return npos;
}

/// The next tag, past remarks, CDATA and processing instructions; false behind the last one.
bool next_tag(xml_walk& x, xml_tag& tag)
{
    while (true) {
        const std::size_t open = x.text.find('<', x.at);
        if (open == npos) {
            x.at = x.text.size();
            return false;
        }
        x.at = open + 1;
        const std::string_view rest = x.text.substr(x.at);
        if (rest.starts_with("!--")) {
            if (!skip_past(x, "-->"))
                return false;
        } else if (rest.starts_with("![CDATA[")) {
            if (!skip_past(x, "]]>"))
                return false;
        } else if (rest.starts_with('?') || rest.starts_with('!')) {
            if (!skip_past(x, ">"))
                return false;
        } else {
            break;
        }
    }
    const std::size_t end = tag_end(x.text, x.at);
    if (end == npos) {
        x.at = x.text.size();
        return false;
    }
    std::string_view body = x.text.substr(x.at, end - x.at);
    x.at = end + 1;
    tag.closed = body.ends_with('/');
    if (tag.closed)
        body.remove_suffix(1);
    std::size_t size = 0;
    while (size < body.size() && !is_space(body[size]))
        ++size;
    tag.name = body.substr(0, size);
    tag.attributes = body.substr(size);
    return true;
}

/// The value of an attribute as it stands between its marks; empty when there is none.
std::string_view attribute(std::string_view attributes, std::string_view name)
{
    while (true) {
        attributes = trim_space(attributes);
        const std::size_t equals = attributes.find('=');
        if (equals == npos)
            return {};
        const std::string_view key = trim_space(attributes.substr(0, equals));
        attributes = trim_space(attributes.substr(equals + 1));
        if (attributes.empty() || (attributes[0] != '"' && attributes[0] != '\''))
            return {};
        const std::size_t end = attributes.find(attributes[0], 1);
        const std::string_view value = attributes.substr(1, end == npos ? npos : end - 1);
        if (equal_nocase(key, name))
            return value;
        if (end == npos)
            return {};
        attributes.remove_prefix(end + 1);
    }
}

// Text
// -------------------------------------------------------------------------------------------------

void append_utf8(std::string& out, unsigned long u)
{
    if (u == 0 || u > 0x10FFFF || (u >= 0xD800 && u < 0xE000)) {
        out += '?';
    } else if (u < 0x80) {
        out += static_cast<char>(u);
    } else if (u < 0x800) {
        out += static_cast<char>(0xC0 | (u >> 6));
        out += static_cast<char>(0x80 | (u & 0x3F));
    } else if (u < 0x10000) {
        out += static_cast<char>(0xE0 | (u >> 12));
        out += static_cast<char>(0x80 | ((u >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (u & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (u >> 18));
        out += static_cast<char>(0x80 | ((u >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((u >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (u & 0x3F));
    }
}

void append_character(std::string& out, unsigned long u, bool utf8)
{
    if (utf8) {
        append_utf8(out, u);
        return;
    }
    const int byte = u == 0 || u > 0x10FFFF ? -1 : cp1252_byte(static_cast<char32_t>(u));
    out += byte < 0 ? '?' : static_cast<char>(byte);
}

/// The character that a name between "&" and ";" stands for; false when it is none.
bool append_entity(std::string& out, std::string_view name, bool utf8)
{
    struct entity {
        std::string_view name;
        char c;
    };
    constexpr entity entities[] = {
        {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    for (const entity& e : entities)
        if (e.name == name) {
            out += e.c;
            return true;
        }
    if (!name.starts_with('#'))
        return false;
    name.remove_prefix(1);
    const bool hex = name.starts_with('x') || name.starts_with('X');
    if (hex)
        name.remove_prefix(1);
    unsigned long u = 0;
    const auto [end, error] =
        std::from_chars(name.data(), name.data() + name.size(), u, hex ? 16 : 10);
    if (error != std::errc() || end != name.data() + name.size())
        return false;
    append_character(out, u, utf8);
    return true;
}

/// Text with its entities as what they stand for; "&" that begins none stays.
void append_plain(std::string& out, std::string_view text, bool utf8)
{
    while (true) {
        const std::size_t mark = text.find('&');
        out.append(text.substr(0, mark));
        if (mark == npos)
            return;
        text.remove_prefix(mark);
        const std::size_t end = text.substr(0, 12).find(';');
        if (end != npos && append_entity(out, text.substr(1, end - 1), utf8)) {
            text.remove_prefix(end + 1);
        } else {
            out += '&';
            text.remove_prefix(1);
        }
    }
}

/// The content of an element: plain parts, CDATA parts, inner tags left out.
void append_content(std::string& out, std::string_view text, bool utf8)
{
    constexpr std::string_view open = "<![CDATA[", close = "]]>";
    while (!text.empty()) {
        const std::size_t tag = text.find('<');
        append_plain(out, text.substr(0, tag), utf8);
        if (tag == npos)
            return;
        text.remove_prefix(tag);
        const bool data = text.starts_with(open);
        const std::size_t end = text.find(data ? close : std::string_view(">"));
        if (data)
            out.append(text.substr(open.size(), end == npos ? npos : end - open.size()));
        text.remove_prefix(end == npos ? text.size() : end + (data ? close.size() : 1));
    }
}

/// Moves behind the tag that closes an element and returns what stood in it.
std::string_view content(xml_walk& x, std::string_view closing)
{
    const std::size_t from = x.at;
    xml_tag tag;
    while (next_tag(x, tag))
        if (equal_nocase(tag.name, closing)) {
            const std::size_t open = x.text.rfind('<', x.at - 1);
            return x.text.substr(from, open - from);
        }
    return x.text.substr(from);
}

// Waypoints
// -------------------------------------------------------------------------------------------------

struct loc_reader {
    import_job& in;
    xml_walk x{};
    bool utf8 = true;
    std::size_t counted = 0; // of the text, for the numbers of lines
    // The waypoint under way.
    std::string name{}, title{};
    bool has_place = false;
    double lat = 0, lon = 0;
};

/// The job's line becomes that of a place in the text.
void count_lines(loc_reader& r, std::size_t at)
{
    at = std::min(at, r.x.text.size());
    r.in.line +=
        static_cast<int>(std::count(r.x.text.begin() + static_cast<std::ptrdiff_t>(r.counted),
                                    r.x.text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
    r.counted = at;
}

/// What is not well-formed UTF-8 is taken as it stands.
void to_bytes(std::string& text, bool utf8)
{
    if (utf8 && is_utf8(text))
        text = from_utf8(text);
}

bool is_ascii(std::string_view text)
{
    return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void set_text(std::string& out, std::string_view text, bool utf8, bool element)
{
    out.clear();
    if (element)
        append_content(out, text, utf8);
    else
        append_plain(out, text, utf8);
    if (!is_ascii(out))
        to_bytes(out, utf8);
}

void finish(loc_reader& r)
{
    pos_rec pos;
    if (trim_space(r.name).empty())
        r.name.swap(r.title); // a list of places may have titles only
    if (!r.has_place || trim_space(r.name).empty() || !file_position(r.in, r.lat, r.lon, pos))
        bad_line(r.in);
    else
        add_waypoint(r.in, trim_space(r.name), trim_space(r.title), pos);
}

/// Windows-1252 and Latin-1 files say so in their first line.
bool is_utf8_file(const import_job& in)
{
    if (in.from_utf8)
        return false; // converted already
    const std::string_view head = in.text.substr(0, std::min<std::size_t>(in.text.find("?>"), 200));
    return find_nocase(head, "windows-1252") == npos && find_nocase(head, "iso-8859-1") == npos;
}

} // namespace

void read_geocaching(import_job& in)
{
    loc_reader r{in, {in.text}, is_utf8_file(in)};
    in.line = 1;
    bool inside = false, any = false;
    xml_tag tag;
    while (next_tag(r.x, tag)) {
        any = any || equal_nocase(tag.name, "loc") || equal_nocase(tag.name, "waypoint");
        if (equal_nocase(tag.name, "waypoint")) {
            count_lines(r, r.x.at);
            if (inside)
                finish(r); // the one before was not closed
            inside = !tag.closed;
            r.name.clear();
            r.title.clear();
            r.has_place = false;
            import_pump(in, r.x.at);
        } else if (inside && equal_nocase(tag.name, "/waypoint")) {
            finish(r);
            inside = false;
        } else if (inside && equal_nocase(tag.name, "name")) {
            set_text(r.name, attribute(tag.attributes, "id"), r.utf8, false);
            if (!tag.closed)
                set_text(r.title, content(r.x, "/name"), r.utf8, true);
        } else if (inside && equal_nocase(tag.name, "coord")) {
            r.has_place = to_number(attribute(tag.attributes, "lat"), r.lat) &&
                          to_number(attribute(tag.attributes, "lon"), r.lon);
        }
    }
    if (inside)
        finish(r);
    if (!any)
        refuse(in);
}

} // namespace velkoro
