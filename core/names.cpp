#include "core/names.h"

#include "core/store.h"
#include "core/text_tools.h"

#include <algorithm>

namespace velkoro {
namespace {

constexpr std::string_view punctuation = "&',.():;$?!#";

/// Umlauts and their like as one letter; given in upper case.
char plain_letter(char c)
{
    switch (static_cast<unsigned char>(c)) {
    case 0xC4: // A with diaeresis
    case 0xC5: // A with ring
    case 0xC6: // AE
        return 'A';
    case 0xD6: // O with diaeresis
    case 0xD8: // O with stroke
        return 'O';
    case 0xDC: // U with diaeresis
        return 'U';
    case 0xDF: // sharp s
        return 'S';
    default: return c;
    }
}

char clean_character(char given, int mode)
{
    const char c = plain_letter(upper(given));
    if (static_cast<unsigned char>(c) < ' ' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
        c == '-')
        return c;
    const bool ext = store.wp_ext_chars;
    const bool stays = (c == ' ' && (ext || mode != 0)) || (c == '+' && ext) ||
                       (ext && mode != 0 && mode != 2 && punctuation.find(c) != punctuation.npos);
    return stays ? c : '-';
}

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// A number as decimal digits of any length, counted up by one: "09" to "10", "99" to "100".
void count_up(std::string& digits)
{
    std::size_t i = digits.size();
    while (i > 0 && digits[i - 1] == '9')
        digits[--i] = '0';
    if (i == 0)
        digits.insert(digits.begin(), '1');
    else
        ++digits[i - 1];
}

/// The next name to try.
std::string next_name(const std::string& name, bool may_grow)
{
    std::size_t stem_size = name.size();
    while (stem_size > 0 && is_digit(name[stem_size - 1]))
        --stem_size;
    std::string stem = name.substr(0, stem_size);
    std::string digits = name.substr(stem_size);
    if (digits.empty())
        digits = "0";
    count_up(digits);
    const auto limit = static_cast<std::size_t>(std::max<int>(store.wp_name_max, 1));
    if (stem.size() + digits.size() > limit) {
        // Two characters go, even where one would do: names of one stem then keep one length.
        stem.resize(stem.size() - std::min<std::size_t>(stem.size(), 2));
        if (stem.empty() && digits.size() > limit && name.size() <= limit && !may_grow)
            digits.erase(0, digits.size() - limit);
    }
    return std::string(trim(stem + digits));
}

} // namespace

std::string_view key_prefix(std::string_view comment)
{
    return !comment.empty() && comment.front() == '@' ? comment.substr(0, 4) : std::string_view{};
}

std::string wp_key(std::string_view name, std::string_view comment)
{
    const std::string_view prefix = key_prefix(comment);
    std::string key;
    key.reserve(prefix.size() + name.size());
    key.append(prefix).append(name);
    return key;
}

std::string wp_key(int index)
{
    const wayp_rec& w = store.wp[static_cast<std::size_t>(index)];
    return wp_key(w.nam, w.kom);
}

std::string name_clean(std::string_view name, int mode)
{
    std::string out(trim(name));
    const std::size_t from = mode == 1 && !out.empty() && out.front() == '@' ? 1 : 0;
    for (std::size_t i = from; i < out.size(); ++i)
        out[i] = clean_character(out[i], mode);
    return out;
}

std::string name_typed(std::string_view text)
{
    std::string out(text);
    for (char& c : out)
        c = clean_character(c, 0);
    return out;
}

bool name_cut(std::string& name, std::string& comment)
{
    if (store.wp_name_max <= 0 || static_cast<int>(name.size()) <= store.wp_name_max)
        return false;
    const auto limit = static_cast<std::size_t>(store.wp_name_max);
    comment.insert(key_prefix(comment).size(), name.substr(limit) + "<");
    name = trim_right(std::string_view(name).substr(0, limit));
    return true;
}

void name_unique(std::string& name, std::string_view comment, int skip_index)
{
    const auto taken = [&](const std::string& candidate) {
        return wp_find_key(candidate, comment, skip_index, store.wp_top) >= 0;
    };
    if (!taken(name))
        return;
    // Many records of one name ask for the same run of numbers over and over: all that was found
    // taken on the way stays taken until a key leaves the store.
    std::string start;
    if (skip_index < 0) {
        start = wp_key(name, comment) + '$' + std::to_string(store.wp_name_max);
        if (const auto known = store.index.taken.find(start); known != store.index.taken.end())
            name = known->second;
    }
    std::string last_taken;
    for (int tries = 1; taken(name); ++tries) {
        last_taken = name;
        name = next_name(name, tries > wp_limit);
    }
    if (skip_index < 0)
        store.index.taken.insert_or_assign(start, last_taken);
}

} // namespace velkoro
