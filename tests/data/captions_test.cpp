// The language table against the menus and controls of the main window.

#include "core/code_page.h"
#include "core/form1.h"
#include "core/text_tools.h"
#include "tests/data/data_files.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

using namespace velkoro;

namespace {

char access_letter(const std::string& caption)
{
    const std::size_t at = caption.find('&');
    return at == std::string::npos || at + 1 == caption.size() ? '\0' : upper(caption[at + 1]);
}

} // namespace

TEST(Captions, GivesTheMainWindowItsFixedGermanCaptions)
{
    std::map<int, std::string> german;
    for (const text_row& r : language_rows())
        german[r.number] = from_utf8(r.german);
    std::size_t compared = 0;
    for (const control* c : Form1.form.controls) {
        if (c->tag.empty() || c->design.caption.empty())
            continue;
        std::string tag = c->tag;
        const int n = std::stoi(cut_token(tag, " "));
        if (n == 0)
            continue;
        EXPECT_EQ(german[n], c->design.caption) << n;
        ++compared;
    }
    EXPECT_GT(compared, 80U);
}

TEST(Captions, HasUniqueAccessLettersInMenusAndMainWindow)
{
    std::map<int, text_row> of;
    for (const text_row& r : language_rows())
        of[r.number] = r;
    // Key: the menu; nullptr for the window itself: its menu bar and its buttons.
    std::map<const control*, std::vector<int>> groups;
    for (const control* c : Form1.form.controls) {
        std::string tag = c->tag;
        const std::string first = cut_token(tag, " ");
        if (!first.empty() && first != "0")
            groups[c->in].push_back(std::stoi(first));
    }
    EXPECT_GT(groups.size(), 10U);
    // Captions that are fixed and share their letter with an earlier one of the same menu.
    const std::set<int> fixed_german = {7130, 7150, 7158};
    for (const auto& [menu, numbers] : groups) {
        std::set<char> english, german;
        for (const int n : numbers) {
            const char e = access_letter(from_utf8(of[n].english));
            if (e != '\0') {
                EXPECT_TRUE(english.insert(e).second) << n << ' ' << of[n].english;
            }
            const char g = access_letter(from_utf8(of[n].german));
            if (g != '\0') {
                EXPECT_EQ(german.insert(g).second, !fixed_german.contains(n)) << of[n].german;
            }
        }
    }
}
