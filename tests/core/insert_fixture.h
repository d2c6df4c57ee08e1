/// A user who answers conflicts as told, and a list that records its rows.
#pragma once

#include "tests/core/store_fixture.h"

#include <vector>

namespace velkoro {

class WaypInsert : public Store {
protected:
    struct row_event {
        int index;
        bool marked;
        bool operator==(const row_event&) const = default;
    };
    WaypInsert()
    {
        hooks.row_added = [this](int i, bool m) { added.push_back({i, m}); };
        hooks.row_changed = [this](int i, bool m) { changed.push_back({i, m}); };
        hooks.conflict_ask = [this](conflict_question& q) {
            ++asked;
            last_question = q;
            q.remember = remember;
            return given;
        };
        hooks.distance = [this](const pos_rec&, const pos_rec&) { return distance; };
    }
    std::vector<row_event> added{}, changed{};
    int asked = 0;
    conflict_question last_question{};
    bool remember = false;
    conflict_answer given = conflict_answer::take_new;
    double distance = 0;
};

} // namespace velkoro
