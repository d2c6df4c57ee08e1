#include "waypoints/coord_preset.h"

#include <algorithm>

namespace velkoro {
namespace {

bool is_digit(char c)
{
    return c >= '0' && c <= '9';
}

/// A place of a sample that digits fill; a blank stands for a leading zero.
bool is_slot(char c)
{
    return is_digit(c) || c == ' ';
}

bool is_mark(char c)
{
    constexpr std::string_view marks = " .,'\"\xB0"; // the last one is the degree sign
    return marks.find(c) != std::string_view::npos;
}

bool has_form(std::string_view text, std::string_view sample)
{
    if (text.size() > sample.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (is_slot(text[i]) != is_slot(sample[i]))
            return false;
    return true;
}

} // namespace

std::size_t preset_length(std::string_view sample, bool angle)
{
    if (angle) {
        const std::size_t mark = sample.find_first_of(".\xB0");
        return mark == std::string_view::npos ? 0 : mark + 1;
    }
    constexpr int digits_typed = 5;
    std::size_t length = sample.size();
    for (int digits = 0; length > 0 && digits < digits_typed; --length)
        digits += is_digit(sample[length - 1]);
    return length;
}

std::string preset_typed(std::string_view before, std::string_view now, std::string_view sample)
{
    std::string typed(now);
    if (now.size() != before.size() + 1 || !now.starts_with(before) || !has_form(before, sample))
        return typed;
    const char c = now.back();
    const std::size_t at = before.size();
    if (is_digit(c)) {
        std::size_t slot = at;
        while (slot < sample.size() && !is_slot(sample[slot]))
            ++slot;
        if (slot == sample.size())
            return typed;
        return std::string(before).append(sample.substr(at, slot - at)) + c;
    }
    if (!is_mark(c))
        return typed;
    std::size_t mark = at;
    while (mark < sample.size() && is_slot(sample[mark]))
        ++mark;
    if (mark == sample.size())
        return typed;
    std::size_t field = at;
    while (field > 0 && is_slot(sample[field - 1]))
        --field;
    if (field == at && at > 0) // no digit yet: the mark stands there, or comes with the first one
        return mark == at ? std::string(before) + sample[at] : std::string(before);
    std::string out(before);
    out.insert(field, mark - at, '0');
    return out + sample[mark];
}

} // namespace velkoro
