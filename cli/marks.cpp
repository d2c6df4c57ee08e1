#include "cli/marks.h"

#include "core/hooks.h"

namespace velkoro {
namespace {

void set_mark(int index, bool on)
{
    if (index < 0)
        return;
    const auto i = static_cast<std::size_t>(index);
    if (i >= cli_marks.marked.size())
        cli_marks.marked.resize(i + 1);
    cli_marks.marked[i] = on;
}

std::vector<int> marked_indexes()
{
    std::vector<int> indexes;
    for (std::size_t i = 0; i < cli_marks.marked.size(); ++i)
        if (cli_marks.marked[i])
            indexes.push_back(static_cast<int>(i));
    return indexes;
}

} // namespace

void install_cli_marks()
{
    cli_marks = {};
    hooks.row_added = [](int index, bool marked) { set_mark(index, marked); };
    hooks.row_changed = [](int index, bool mark) {
        if (mark)
            set_mark(index, true);
    };
    hooks.rows_compacted = [](const std::vector<int>& new_index) {
        const std::vector<int> before = marked_indexes();
        cli_marks.marked.clear();
        for (const int index : before)
            if (static_cast<std::size_t>(index) < new_index.size())
                set_mark(new_index[static_cast<std::size_t>(index)], true);
    };
    hooks.rows_reset = [] { cli_marks.marked.clear(); };
    hooks.marked_rows = marked_indexes;
}

} // namespace velkoro
