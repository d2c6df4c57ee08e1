/// The store as plainly as it can be told: every search is a walk over the array, every list is
/// taken apart token by token, nothing is kept beside the records. It shares no code with the
/// store; random runs are held against it.
#pragma once

#include "core/hooks.h"
#include "core/platform.h"
#include "core/store.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace velkoro {

struct naive_store {
    std::vector<wayp_rec> wp{};
    std::vector<route_rec> rou{};
    int rou_cur = -1;
    bool dirty = false;
    std::string refp_name = "??????";
    pos_rec refp_pos{};
    int name_max = 6;
    bool ext_chars = false;
    bool symbols = true;

    // The batch.
    bool open = false, cancelled = false, reconcile = false, warned_long = false,
         warned_clean = false;
    int last = -1, added = 0, by_name = 0, by_pos = 0, unchanged = 0;
    int memory[2] = {0, 0};
    std::vector<std::pair<std::string, std::string>> renamed{};
    std::vector<bool> routes_changed{};
    std::vector<std::string> elsewhere{};

    // The world.
    std::vector<std::string> messages{};
    std::vector<int> order{}, marked{};
    std::function<answer(int number)> reply{};
    std::function<conflict_answer(const wayp_rec& old, const wayp_rec& rec, bool by_position,
                                  bool& remember)>
        decide{};
    std::function<double(const pos_rec&, const pos_rec&)> distance{};

    struct stop {};
    struct full {};

    int top() const { return static_cast<int>(wp.size()) - 1; }
    wayp_rec& at(int i) { return wp[static_cast<std::size_t>(i)]; }

    static std::string trim(std::string s)
    {
        while (!s.empty() && s.front() == ' ')
            s.erase(0, 1);
        while (!s.empty() && s.back() == ' ')
            s.pop_back();
        return s;
    }
    static std::string key(const std::string& nam, const std::string& kom)
    {
        return kom.substr(0, 1) == "@" ? kom.substr(0, 4) + nam : nam;
    }
    int find_key(const std::string& nam, const std::string& kom, int skip, int to)
    {
        for (int i = 0; i <= to && i <= top(); ++i)
            if (i != skip && key(at(i).nam, at(i).kom) == key(nam, kom))
                return i;
        return -1;
    }
    static bool near(const pos_rec& a, const pos_rec& b)
    {
        const auto cut = [](std::int32_t v) { return v & ~1023; };
        return cut(a.lat) == cut(b.lat) && cut(a.lon) == cut(b.lon);
    }
    int find_pos(const pos_rec& p, int to)
    {
        for (int i = 0; i <= to && i <= top(); ++i)
            if (near(at(i).pos, p))
                return i;
        return -1;
    }
    std::string clean(const std::string& text, int mode) const
    {
        static const std::map<unsigned char, char> letters = {
            {0xC4, 'A'}, {0xE4, 'A'}, {0xD6, 'O'}, {0xF6, 'O'}, {0xDC, 'U'},
            {0xFC, 'U'}, {0xDF, 'S'}, {0xC5, 'A'}, {0xE5, 'A'}, {0xD8, 'O'},
            {0xF8, 'O'}, {0xC6, 'A'}, {0xE6, 'A'}};
        std::string out;
        bool first = true;
        for (const char given : trim(text)) {
            char c = given;
            if (c >= 'a' && c <= 'z')
                c = static_cast<char>(c - 'a' + 'A');
            if (letters.contains(static_cast<unsigned char>(c)))
                c = letters.at(static_cast<unsigned char>(c));
            const bool low = static_cast<unsigned char>(c) < 32;
            bool stays = low || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || c == '-';
            if (c == ' ')
                stays = ext_chars || mode != 0;
            if (c == '+')
                stays = ext_chars;
            if (std::string("&',.():;$?!#").find(c) != std::string::npos)
                stays = ext_chars && mode != 0 && mode != 2;
            if (first && mode == 1 && given == '@')
                stays = true;
            out += stays ? c : '-';
            first = false;
        }
        return out;
    }
    void unique(std::string& nam, const std::string& kom, int skip)
    {
        while (find_key(nam, kom, skip, top()) >= 0) {
            std::size_t p = nam.size();
            while (p > 0 && nam[p - 1] >= '0' && nam[p - 1] <= '9')
                --p;
            const std::size_t width = p == nam.size() ? 1 : nam.size() - p;
            const long long number = p == nam.size() ? 0 : std::stoll(nam.substr(p));
            std::string digits = std::to_string(number + 1);
            while (digits.size() < width)
                digits = "0" + digits;
            std::string stem = nam.substr(0, p);
            if (static_cast<int>(stem.size() + digits.size()) > name_max) {
                stem = stem.substr(0, stem.size() < 2 ? 0 : stem.size() - 2);
                if (stem.empty() && static_cast<int>(digits.size()) > name_max &&
                    static_cast<int>(nam.size()) <= name_max)
                    digits = digits.substr(digits.size() - static_cast<std::size_t>(name_max));
            }
            nam = trim(stem + digits);
        }
    }
    static std::vector<std::string> tokens(std::string list)
    {
        std::vector<std::string> out;
        while (!list.empty()) {
            const std::size_t p = list.find('$');
            out.push_back(list.substr(0, p));
            list = p == std::string::npos ? "" : list.substr(p + 1);
        }
        return out;
    }
    static std::string joined(const std::vector<std::string>& all)
    {
        std::string out;
        for (const std::string& t : all)
            out += t + "$";
        return out;
    }
    void tell(int number, const std::string& p1 = "#", const std::string& p2 = "#")
    {
        messages.push_back(std::to_string(number) + " " + p1 + " " + p2 + " #");
    }
    static void list_number(std::string& list, std::size_t n)
    {
        list += (list.empty() ? "" : ", ") + std::to_string(n);
    }
    static std::string cut140(const std::string& names)
    {
        return names.size() > 140 ? names.substr(0, 140) + " ..." : names;
    }

    // Renaming, moving
    std::string rewrite_routes(const std::string& from, const std::string& to, bool collect)
    {
        std::string numbers;
        if (from == to)
            return numbers;
        for (std::size_t r = 0; r < rou.size(); ++r) {
            if (("$" + rou[r].wps).find("$" + from + "$") == std::string::npos)
                continue;
            std::vector<std::string> all = tokens(rou[r].wps);
            for (std::string& t : all)
                if (t == from)
                    t = to;
            rou[r].wps = joined(all);
            list_number(numbers, r + 1);
            if (collect) {
                routes_changed.resize(std::max(routes_changed.size(), r + 1));
                routes_changed[r] = true;
            }
        }
        return numbers;
    }
    bool is_reference(const wayp_rec& w) const { return w.nam == refp_name && w.pos == refp_pos; }
    std::string rename(int i, const std::string& nam, const std::string& kom)
    {
        if (at(i).nam == nam && at(i).kom == kom)
            return "";
        if (is_reference(at(i)))
            refp_name = nam;
        const std::string from = key(at(i).nam, at(i).kom);
        at(i).nam = nam;
        at(i).kom = kom;
        dirty = true;
        return rewrite_routes(from, key(nam, kom), false);
    }
    void move(int i, const pos_rec& p)
    {
        if (at(i).pos == p)
            return;
        if (is_reference(at(i)))
            refp_pos = p;
        at(i).pos = p;
        dirty = true;
    }

    // Batches
    void clear_batch()
    {
        open = cancelled = reconcile = warned_long = warned_clean = false;
        last = -1;
        added = by_name = by_pos = unchanged = memory[0] = memory[1] = 0;
        renamed.clear();
        routes_changed.clear();
        elsewhere.clear();
    }
    std::string close(int mode)
    {
        if (mode == 2)
            unchanged = 0;
        std::string report;
        if (by_name > 0 || by_pos > 0 || unchanged > 0 || !elsewhere.empty() || mode == 3) {
            report = "2000 " + std::to_string(added) + " # #\n2010 " + std::to_string(by_name) +
                     " # #\n2020 " + std::to_string(by_pos) + " # #\n2030 " +
                     std::to_string(unchanged) + " # #";
            if (!elsewhere.empty()) {
                std::string all;
                for (const std::string& n : elsewhere)
                    all += (all.empty() ? "" : " ") + n;
                report += "\n2031 " + std::to_string(elsewhere.size()) + " " + cut140(all) + " #";
            }
        }
        std::string numbers;
        for (std::size_t r = 0; r < routes_changed.size(); ++r)
            if (routes_changed[r])
                list_number(numbers, r + 1);
        clear_batch();
        if (!numbers.empty())
            tell(2040, numbers);
        return report;
    }
    void fit(wayp_rec& rec)
    {
        if (static_cast<int>(rec.nam.size()) > name_max) {
            const auto n = static_cast<std::size_t>(name_max);
            const std::string tail = rec.nam.substr(n) + "<";
            if (rec.kom.substr(0, 1) == "@")
                rec.kom = rec.kom.substr(0, 4) + tail +
                          (rec.kom.size() > 4 ? rec.kom.substr(4) : std::string());
            else
                rec.kom = tail + rec.kom;
            rec.nam = trim(rec.nam.substr(0, n));
        }
    }
    int append(const wayp_rec& rec)
    {
        if (wp.size() == 32767)
            throw full{};
        wp.push_back(rec);
        dirty = true;
        ++added;
        if (rec.nam == refp_name)
            refp_pos = rec.pos;
        return top();
    }
    int insert(wayp_rec& rec, int mode)
    {
        if (mode > 0) {
            rec.kom = close(mode);
            return -1;
        }
        if (mode <= -10) {
            if (!open || cancelled)
                clear_batch();
            open = true;
            reconcile = mode == -20;
            last = top();
            return -1;
        }
        if (!open || mode == -1 || mode == -3)
            last = top();
        if (rec.alt == 32767)
            rec.alt = -32768;
        rec.nam = trim(rec.nam);
        const std::string incoming = key(rec.nam, rec.kom);
        if (static_cast<int>(rec.nam.size()) > name_max && !warned_long) {
            warned_long = true;
            messages.push_back("2035 " + std::to_string(name_max) + " # # 2760 # # #");
            if (reply(2035) != answer::yes) {
                cancelled = true;
                throw stop{};
            }
        }
        fit(rec);
        std::string cleaned = clean(rec.nam, 0);
        if (cleaned.empty())
            cleaned = "-";
        if (cleaned != rec.nam) {
            rec.nam = cleaned;
            if (!warned_clean) {
                warned_clean = true;
                tell(2038);
            }
        }
        const int index = settle(rec);
        if (index >= 0 && key(rec.nam, rec.kom) != incoming)
            renamed.emplace_back(incoming, key(rec.nam, rec.kom));
        return index;
    }
    int settle(wayp_rec& rec)
    {
        int i = find_key(rec.nam, rec.kom, -1, last);
        const bool position = i < 0;
        if (i < 0)
            i = find_pos(rec.pos, last);
        if (i < 0) {
            if (!reconcile)
                return append(rec);
            ++unchanged;
            return -1;
        }
        wayp_rec& old = at(i);
        const auto n = static_cast<std::size_t>(name_max);
        const bool kom_differs = clean(old.kom.substr(0, rec.kom.size()), 1) != clean(rec.kom, 1);
        bool differs = kom_differs;
        if (rec.prox >= 1 && old.prox != 0 && rec.prox != old.prox)
            differs = true;
        if (rec.alt != -32768 && rec.alt != old.alt)
            differs = true;
        if (symbols && (rec.symb & 255) != (old.symb & 255))
            differs = true;
        if (rec.nam.substr(0, n) != old.nam.substr(0, n))
            differs = true;
        int what = 0; // 0 old, 1 new, 2 both
        if (!differs) {
            if (rec.prox >= 1 && old.prox == 0) {
                old.prox = rec.prox;
                dirty = true;
            }
        } else {
            const double d = distance(rec.pos, old.pos);
            int& mem = memory[position ? 1 : 0];
            bool asks = mem < 3 || (mem >= 6 && d >= 1);
            what = mem < 3 ? 0 : mem < 6 ? mem - 3 : mem - 6;
            if (reconcile && d <= 10 && rec.dat >= old.dat) {
                asks = false;
                what = 1;
            }
            if (asks) {
                bool remember = false;
                const conflict_answer a = decide(old, rec, position, remember);
                if (a == conflict_answer::cancel_batch) {
                    cancelled = true;
                    throw stop{};
                }
                what = static_cast<int>(a);
                if (remember)
                    mem = 3 + what;
            }
        }
        if (what == 0) {
            ++unchanged;
            if (!near(rec.pos, old.pos))
                elsewhere.push_back(rec.nam);
            rec.nam = old.nam;
            rec.kom = old.kom;
            return i;
        }
        if (what == 2) {
            unique(rec.nam, rec.kom, -1);
            const int index = append(rec);
            last = top();
            return index;
        }
        const std::string from = key(old.nam, old.kom);
        if (!kom_differs)
            rec.kom = old.kom;
        if (key(rec.nam, rec.kom) != from && find_key(rec.nam, rec.kom, i, last) >= 0)
            unique(rec.nam, rec.kom, i);
        if (rec.alt == -32768)
            rec.alt = old.alt;
        if (!symbols) {
            rec.symb = old.symb;
            rec.symbmode = old.symbmode;
        }
        if (is_reference(old))
            refp_name = rec.nam;
        old = rec;
        if (rec.nam == refp_name)
            refp_pos = rec.pos;
        dirty = true;
        ++(position ? by_pos : by_name);
        rewrite_routes(from, key(rec.nam, rec.kom), true);
        return i;
    }

    // Routes
    static void drop(route_rec& r, const std::vector<bool>& keep)
    {
        for (std::string* list : {&r.wps, &r.speed, &r.korr, &r.anw}) {
            const std::vector<std::string> all = tokens(*list);
            std::vector<std::string> left;
            for (std::size_t n = 0; n < all.size(); ++n)
                if (n >= keep.size() || keep[n])
                    left.push_back(all[n]);
            *list = joined(left);
        }
    }
    int add(route_rec r)
    {
        if (r.wps.empty())
            return -1;
        std::vector<std::string> all = tokens(r.wps);
        std::vector<bool> keep;
        std::string missing;
        for (std::string& t : all) {
            for (const auto& [from, to] : renamed)
                if (trim(t) == from) {
                    t = to;
                    break;
                }
            t = trim(t);
            keep.push_back(find_key(t, "", -1, top()) >= 0);
            if (!keep.back() && !t.empty())
                missing += (missing.empty() ? "" : " ") + t;
        }
        r.wps = joined(all);
        const bool any = std::ranges::count(keep, true) > 0;
        if (std::ranges::count(keep, false) > 0)
            drop(r, keep);
        r.nam.resize(16, ' ');
        if (any) {
            if (r.farbe == 0)
                r.farbe = static_cast<std::int16_t>(((static_cast<int>(rou.size()) + 1) & 3) + 1);
            rou.push_back(r);
            dirty = true;
        }
        if (!missing.empty())
            tell(1640, trim(r.nam), missing);
        return any ? static_cast<int>(rou.size()) - 1 : -1;
    }
    void remove_route(int i)
    {
        if (i < 0 || i >= static_cast<int>(rou.size()))
            return;
        rou.erase(rou.begin() + i);
        if (rou_cur > i || rou_cur >= static_cast<int>(rou.size()))
            --rou_cur;
        dirty = true;
    }
    void cleanup()
    {
        for (int i = static_cast<int>(rou.size()) - 1; i >= 0; --i) {
            std::string& n = rou[static_cast<std::size_t>(i)].nam;
            n = trim(n);
            n.resize(16, ' ');
            if (rou[static_cast<std::size_t>(i)].wps.empty())
                remove_route(i);
        }
    }

    // Deleting
    void remove(int index)
    {
        std::vector<int> victims = marked;
        if (index >= 0)
            victims = {index};
        std::string all;
        for (const int v : victims)
            all += (all.empty() ? "" : " ") + at(v).nam;
        if (victims.empty()) {
            if (index == -1)
                tell(2050);
            return;
        }
        if (index != -2) {
            tell(2060, cut140(all));
            if (reply(2060) != answer::ok)
                return;
            std::string numbers;
            for (std::size_t r = 0; r < rou.size(); ++r) {
                bool used = false;
                for (const int v : victims)
                    for (const std::string& t : tokens(rou[r].wps))
                        used = used || t == key(at(v).nam, at(v).kom);
                if (used)
                    list_number(numbers, r + 1);
            }
            if (!numbers.empty()) {
                tell(2070, numbers);
                if (reply(2070) != answer::ok)
                    return;
            }
        }
        for (const int v : victims)
            for (route_rec& r : rou) {
                std::vector<bool> keep;
                for (const std::string& t : tokens(r.wps))
                    keep.push_back(t != key(at(v).nam, at(v).kom));
                drop(r, keep);
            }
        int new_top = top();
        std::vector<int> rows = order;
        for (const int v : victims) {
            std::erase(rows, v);
            at(v).nam.clear();
            --new_top;
        }
        for (const int row : rows)
            if (row > new_top) {
                int gap = 0;
                while (!at(gap).nam.empty())
                    ++gap;
                at(gap) = at(row);
            }
        wp.resize(static_cast<std::size_t>(new_top + 1));
        dirty = true;
    }
};

} // namespace velkoro
