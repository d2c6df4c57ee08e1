/// The numbered text table: every visible text is fetched by number from velkoro.res, one column
/// per language.
#pragma once

#include "core/platform.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velkoro {

struct window;

inline constexpr int res_format = 206;

struct text_state {
    std::vector<std::string> texts{}; ///< by number; empty slot: missing
    std::vector<std::string> languages{};
    std::vector<std::pair<std::string, std::string>> replacements{}; ///< from velkoro.rep
    int language = 0;                                                ///< active column
    int loaded = -1;                                                 ///< column in memory, -1 none
    bool generator = false; ///< missing texts are shown in a box too
};
inline text_state text_table;

/// The text of a number in the active language, its marks "#" replaced by the parameters in order.
/// A parameter "#" leaves its mark. A number below 1 gives an empty text, an unknown one "Missing
/// text " and the number. Loads the table on first use.
std::string text(int number, std::string_view p1 = "#", std::string_view p2 = "#",
                 std::string_view p3 = "#");
std::string text(int number, long long p1);
std::string text(int number, long long p1, long long p2);

/// Shows a numbered text and returns the answer.
answer say(int number, enum buttons b = buttons::ok, enum icon i = icon::exclamation,
           std::string_view p1 = "#", std::string_view p2 = "#", std::string_view p3 = "#");

/// Loads velkoro.res of the program folder for the active language (replacements, regeneration,
/// messages as needed).
void texts_load();

/// One byte rotated as the file keeps it, and back: 65 is stored as 80.
unsigned char res_scramble(unsigned char c);
unsigned char res_unscramble(unsigned char c);

/// A text table as rows: number and one field per language; row 0 of `header` is the format number,
/// then the unused field, then names.
struct res_table {
    std::vector<std::string> header{};
    std::vector<std::pair<int, std::vector<std::string>>> rows{};
    bool damaged = false; ///< the file ends inside a record
    bool operator==(const res_table&) const = default;
};
/// Decodes velkoro.res bytes; hostile input gives what could be read and `damaged`.
res_table res_decode(std::string_view bytes);
/// Builds velkoro.res bytes from the tab-separated source (Windows-1252 or UTF-8 with a byte order
/// mark). Throws std::runtime_error with the line on a bad line.
std::string res_build(std::string_view source);

/// Translates a window from its tags and those of its controls; applies list_back.
void translate_form(window& w);
/// Translates every window.
void translate_all();

} // namespace velkoro
