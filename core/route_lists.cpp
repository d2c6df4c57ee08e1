#include "core/route_lists.h"

#include "core/text_tools.h"

namespace velkoro {
namespace {

std::string kept(std::string_view list, const std::vector<bool>& keep)
{
    std::string out;
    out.reserve(list.size());
    for (std::size_t n = 0; !list.empty(); ++n) {
        const std::string_view token = next_field(list, '$');
        if (n >= keep.size() || keep[n])
            out.append(token) += '$';
    }
    return out;
}

} // namespace

bool list_holds(std::string_view list, std::string_view token)
{
    // Tokens stand between "$", the first one at the start.
    for (std::size_t at = list.find(token); at != list.npos; at = list.find(token, at + 1)) {
        const std::size_t end = at + token.size();
        if ((at == 0 || list[at - 1] == '$') && (end == list.size() || list[end] == '$'))
            return !(token.empty() && end == list.size());
    }
    return false;
}

std::string list_replace(std::string_view list, std::string_view from, std::string_view to)
{
    std::string out;
    out.reserve(list.size() + to.size());
    while (!list.empty()) {
        const std::string_view token = next_field(list, '$');
        out.append(token == from ? to : token) += '$';
    }
    return out;
}

void route_keep(route_rec& route, const std::vector<bool>& keep)
{
    for (std::string* list : {&route.wps, &route.speed, &route.korr, &route.anw})
        *list = kept(*list, keep);
}

std::vector<int> route_points(const route_rec& route)
{
    std::vector<int> points;
    std::string_view keys = route.wps;
    while (!keys.empty())
        if (const int i = wp_find_key(next_field(keys, '$'), {}, -1, store.wp_top); i >= 0)
            points.push_back(i);
    return points;
}

std::string number_list(const std::vector<int>& numbers)
{
    std::string out;
    for (const int n : numbers)
        out.append(out.empty() ? "" : ", ").append(std::to_string(n));
    return out;
}

std::string shown_names(std::string_view names)
{
    std::string out(names.substr(0, name_list_limit));
    if (names.size() > name_list_limit)
        out += " ...";
    return out;
}

std::vector<int> routes_rename(std::string_view old_key, std::string_view new_key)
{
    std::vector<int> numbers;
    if (old_key == new_key)
        return numbers;
    for (int r = 0; r <= store.rou_top; ++r) {
        std::string& wps = store.rou[static_cast<std::size_t>(r)].wps;
        if (!list_holds(wps, old_key))
            continue;
        wps = list_replace(wps, old_key, new_key);
        numbers.push_back(r + 1);
    }
    return numbers;
}

} // namespace velkoro
