// Random runs of the store's operations against the plain model: after every step the whole stores,
// the routes, the counts and the messages are the same.
#include "core/code_page.h"
#include "core/trap.h"
#include "tests/core/naive_store.h"
#include "tests/core/store_fixture.h"

#include <cmath>
#include <numeric>
#include <random>
#include <set>

using namespace velkoro;

namespace {

class StoreRun : public testing::TestWithParam<std::tuple<bool, int>> {
protected:
    StoreRun()
    {
        scripted_platform::plain_texts();
        random.seed(static_cast<unsigned>(std::get<1>(GetParam())));
        const auto reply = [this](int number) {
            const bool refuse = refusals && number != 2038 && number != 2040 && number != 1640;
            return number == 2035 ? (refuse ? answer::no : answer::yes)
                                  : (refuse ? answer::cancel : answer::ok);
        };
        model.reply = reply;
        platform.message = [this, reply](const message_box& m) {
            messages.push_back(m.text);
            return reply(m.number);
        };
        hooks.distance = model.distance = [](const pos_rec& a, const pos_rec& b) {
            return std::abs(static_cast<double>(a.lat) - b.lat) / 4096.0;
        };
        model.decide = [this](const wayp_rec& old, const wayp_rec& rec, bool by_position,
                              bool& remember) {
            return answer_to(old, rec, by_position, remember);
        };
        hooks.conflict_ask = [this](conflict_question& q) {
            return answer_to(wp(q.old_index), *q.incoming, q.by_position, q.remember);
        };
        hooks.symbols_in_use = [this] { return model.symbols; };
        hooks.marked_rows = [this] { return model.marked; };
        hooks.list_order = [this] { return model.order; };
        hooks.rows_compacted = [this](const std::vector<int>& n) { new_index = n; };
    }

    int pick(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
    template <class T> const T& one_of(const std::vector<T>& all)
    {
        return all[static_cast<std::size_t>(pick(static_cast<int>(all.size())))];
    }

    /// Depends on nothing but what both sides must show in the question.
    conflict_answer answer_to(const wayp_rec& old, const wayp_rec& rec, bool by_position,
                              bool& remember) const
    {
        std::size_t h = step_salt;
        for (const std::string* s : {&old.nam, &old.kom, &rec.nam, &rec.kom})
            for (const char c : *s)
                h = h * 31 + static_cast<unsigned char>(c);
        h = h * 31 + (by_position ? 1 : 0);
        h = (h ^ (h >> 15)) * 0x9E3779B1U;
        remember = (h >> 8) % 5 == 0;
        const auto a = static_cast<int>((h >> 16) % 13);
        return a == 12 ? conflict_answer::cancel_batch : static_cast<conflict_answer>(a % 3);
    }

    wayp_rec some_waypoint()
    {
        static const std::vector<std::string> nams = {
            "A",   "B",      "a",       " A ",      "A1",     "A2",  "A9",
            "B09", "ABCDEF", "ABCDEFG", "ABCDEFGH", "ABCDE9", "A B", "\xC4",
            "99",  "999999", "a_b",     "ABCDE FG", "",       "Z-1"};
        static const std::vector<std::string> koms = {
            "", "", "@123", "@123x", "@124", "@1", "hut", "HUT", "h\xFCtte am See", "HUTTE"};
        wayp_rec w;
        w.nam = one_of(nams);
        w.kom = one_of(koms);
        const int place = pick(12);
        w.pos = {place * 8192 + pick(1500), -place * 4096 - pick(1500)};
        w.dat = pick(3);
        w.prox = one_of(std::vector<std::int16_t>{0, 0, 5, 7, -5});
        w.symb = one_of(std::vector<std::int16_t>{0, 1, 257, 2});
        w.symbmode = static_cast<std::int16_t>(pick(3));
        w.alt = one_of(std::vector<std::int16_t>{alt_unknown, 100, 200, 32767});
        return w;
    }
    std::string some_tokens()
    {
        std::string wps;
        for (int n = pick(6); n > 0; --n) {
            const int kind = pick(8);
            if (kind < 5 && store.wp_top >= 0)
                wps += wp_key(pick(store.wp_top + 1));
            else if (kind < 7) {
                const wayp_rec w = some_waypoint();
                wps += naive_store::key(naive_store::trim(w.nam), w.kom);
            } else
                wps += " @123A ";
            wps += '$';
        }
        return wps;
    }
    std::string some_list()
    {
        std::string list;
        for (int n = pick(7); n > 0; --n)
            list += std::to_string(pick(100)) + "$";
        return list;
    }

    void insert_one(bool unique)
    {
        const wayp_rec w = some_waypoint();
        const int mode = unique ? one_of(std::vector<int>{-1, -3}) : -pick(4);
        wayp_rec real = w;
        wayp_rec plain = w;
        int real_index = -99;
        int plain_index = -99;
        try {
            real_index = wayp_insert(real, mode);
        } catch (const batch_cancelled&) {
        }
        try {
            plain_index = model.insert(plain, mode);
        } catch (const naive_store::stop&) {
        }
        ASSERT_EQ(real_index, plain_index);
        if (real_index != -99) {
            ASSERT_EQ(real, plain);
        }
    }
    void batch_step(int mode)
    {
        wayp_rec real;
        wayp_rec plain;
        wayp_insert(real, mode);
        model.insert(plain, mode);
        ASSERT_EQ(real.kom, plain.kom);
    }
    void rename_one(bool unique)
    {
        if (store.wp_top < 0)
            return;
        const int i = pick(store.wp_top + 1);
        const wayp_rec w = some_waypoint();
        std::string nam = name_clean(w.nam, 0).substr(0, 6);
        if (nam.empty())
            nam = "N";
        std::string plain = nam;
        if (unique) {
            name_unique(nam, w.kom, i);
            model.unique(plain, w.kom, i);
            ASSERT_EQ(nam, plain);
        }
        ASSERT_EQ(wp_rename(i, nam, w.kom), model.rename(i, plain, w.kom));
    }
    void delete_some()
    {
        const int n = store.wp_top + 1;
        model.order.resize(static_cast<std::size_t>(n));
        std::iota(model.order.begin(), model.order.end(), 0);
        std::shuffle(model.order.begin(), model.order.end(), random);
        model.marked.clear();
        const int share = 1 + pick(6);
        for (const int row : model.order)
            if (pick(share) == 0)
                model.marked.push_back(row);
        const int which = pick(4);
        const int index = which == 0 ? -1 : which == 1 || n == 0 ? -2 : pick(n);
        const std::vector<wayp_rec> before = store.wp;
        new_index.clear();
        wayp_delete(index);
        model.remove(index);
        for (std::size_t i = 0; i < new_index.size(); ++i)
            if (new_index[i] >= 0) {
                ASSERT_EQ(wp(new_index[i]), before[i]) << "row " << i;
            }
    }
    void add_one_route()
    {
        route_rec r;
        r.nam = one_of(std::vector<std::string>{"ONE", "A long name of a route", ""});
        r.wps = some_tokens();
        r.speed = some_list();
        r.korr = some_list();
        r.anw = some_list();
        r.farbe = static_cast<std::int16_t>(pick(5));
        ASSERT_EQ(route_add(r), model.add(r));
    }
    void step(bool unique)
    {
        step_salt = random();
        refusals = pick(8) == 0;
        switch (pick(40)) {
        case 0: batch_step(batch_open); break;
        case 1: batch_step(batch_reconcile); break;
        case 2:
        case 3: batch_step(1 + pick(3)); break;
        case 4:
        case 5:
        case 6: rename_one(unique); break;
        case 7:
            if (store.wp_top >= 0) {
                const int i = pick(store.wp_top + 1);
                const pos_rec p = some_waypoint().pos;
                wp_move(i, p);
                model.move(i, p);
            }
            break;
        case 8:
        case 9: delete_some(); break;
        case 10:
        case 11:
        case 12:
        case 13: add_one_route(); break;
        case 14:
            route_cleanup();
            model.cleanup();
            break;
        case 15: {
            const int i = pick(4) - 1;
            route_delete(i);
            model.remove_route(i);
            break;
        }
        case 16: store.wp_ext_chars = model.ext_chars = pick(2) == 0; break;
        case 17:
            model.name_max = pick(3) == 0 ? 4 + pick(6) : 6;
            store.wp_name_max = static_cast<std::int16_t>(model.name_max);
            break;
        case 18: model.symbols = pick(2) == 0; break;
        case 19: {
            const int kind = pick(2);
            batch.memory[static_cast<std::size_t>(kind)] = model.memory[kind] = pick(9);
            break;
        }
        case 20:
            if (store.wp_top >= 0) {
                const wayp_rec& w = wp(pick(store.wp_top + 1));
                store.refp_name = model.refp_name = w.nam;
                store.refp_pos = model.refp_pos = w.pos;
            }
            break;
        case 21:
            store.rou_cur = static_cast<std::int16_t>(pick(store.rou_top + 2) - 1);
            model.rou_cur = store.rou_cur;
            break;
        default: insert_one(unique);
        }
    }
    void compare()
    {
        ASSERT_EQ(store.wp_top, model.top());
        ASSERT_EQ(store.wp, model.wp);
        ASSERT_EQ(store.rou_top + 1, static_cast<int>(model.rou.size()));
        ASSERT_EQ(store.rou, model.rou);
        ASSERT_EQ(store.rou_cur, model.rou_cur);
        ASSERT_EQ(store.wp_dirty, model.dirty);
        ASSERT_EQ(store.refp_name, model.refp_name);
        ASSERT_EQ(store.refp_pos, model.refp_pos);
        ASSERT_EQ(messages, model.messages);
        ASSERT_EQ(batch.added, model.added);
        ASSERT_EQ(batch.changed_by_name, model.by_name);
        ASSERT_EQ(batch.changed_by_position, model.by_pos);
        ASSERT_EQ(batch.unchanged, model.unchanged);
        ASSERT_EQ(batch.memory[0], model.memory[0]);
        ASSERT_EQ(batch.memory[1], model.memory[1]);
        for (int n = 0; n < 4; ++n) {
            const wayp_rec w = some_waypoint();
            const int to = pick(store.wp_top + 3) - 1;
            const int skip = pick(store.wp_top + 3) - 1;
            ASSERT_EQ(wp_find_key(w.nam, w.kom, skip, to), model.find_key(w.nam, w.kom, skip, to));
            ASSERT_EQ(wp_find_pos(w.pos, to), model.find_pos(w.pos, to));
        }
    }
    void expect_unique_keys()
    {
        std::set<std::string> keys;
        for (int i = 0; i <= store.wp_top; ++i)
            ASSERT_TRUE(keys.insert(wp_key(i)).second) << wp_key(i) << " stands twice";
    }

    scripted_platform user{};
    naive_store model{};
    std::mt19937 random{};
    std::vector<std::string> messages{};
    std::vector<int> new_index{};
    std::size_t step_salt = 0;
    bool refusals = false;
};

} // namespace

TEST_P(StoreRun, AgreesWithThePlainModelAfterEveryStep)
{
    const bool unique = std::get<0>(GetParam());
    for (int n = 0; n < 1500; ++n) {
        messages.clear();
        model.messages.clear();
        store.wp_dirty = model.dirty = false;
        step(unique);
        compare();
        expect_routes_resolve();
        if (unique)
            expect_unique_keys();
        if (HasFatalFailure() || HasNonfatalFailure())
            FAIL() << "seed " << std::get<1>(GetParam()) << ", step " << n;
    }
}

INSTANTIATE_TEST_SUITE_P(Doubles, StoreRun,
                         testing::Combine(testing::Values(false), testing::Range(1, 25)));
INSTANTIATE_TEST_SUITE_P(UniqueKeys, StoreRun,
                         testing::Combine(testing::Values(true), testing::Range(101, 125)));
