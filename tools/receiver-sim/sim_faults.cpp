#include "tools/receiver-sim/sim_faults.h"

#include <array>
#include <charconv>
#include <utility>

namespace velkoro {
namespace {

constexpr std::array<std::pair<std::string_view, sim_fault>, 6> names = {{
    {"drop", sim_fault::drop},
    {"delay", sim_fault::delay},
    {"corrupt", sim_fault::corrupt},
    {"split", sim_fault::split},
    {"repeat", sim_fault::repeat},
    {"shorten", sim_fault::shorten},
}};

/// A number that is the whole text.
template <class T> bool whole_number(std::string_view text, T& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc{} && end == text.data() + text.size();
}

/// Numbers of 0 to below 1 from a seed (splitmix64), the same on every machine.
double next_random(std::uint64_t& seed)
{
    std::uint64_t z = (seed += 0x9E3779B97F4A7C15U);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
    return static_cast<double>((z ^ (z >> 31)) >> 11) * 0x1.0p-53;
}

bool applies(const sim_fault_rule& rule, int count, std::uint64_t& seed)
{
    if (rule.at > 0)
        return count == rule.at;
    if (rule.every > 0)
        return count % rule.every == 0;
    return next_random(seed) < rule.probability;
}

} // namespace

std::optional<sim_fault_rule> sim_fault_of(std::string_view text)
{
    const std::size_t at = text.find('@');
    if (at == std::string_view::npos)
        return std::nullopt;
    std::string_view name = text.substr(0, at);
    std::string_view when = text.substr(at + 1);
    sim_fault_rule rule;
    if (const std::size_t equals = name.find('='); equals != std::string_view::npos) {
        if (!whole_number(name.substr(equals + 1), rule.seconds) || rule.seconds < 0)
            return std::nullopt;
        name = name.substr(0, equals);
    }
    bool known = false;
    for (const auto& [fault_name, fault] : names)
        if (name == fault_name) {
            rule.what = fault;
            known = true;
        }
    if (!known)
        return std::nullopt;
    if (when.starts_with("every")) {
        when.remove_prefix(5);
        return whole_number(when, rule.every) && rule.every > 0 ? std::optional(rule)
                                                                : std::nullopt;
    }
    if (when.ends_with("%")) {
        when.remove_suffix(1);
        double percent = 0;
        if (!whole_number(when, percent) || percent < 0 || percent > 100)
            return std::nullopt;
        rule.probability = percent / 100;
        return rule;
    }
    return whole_number(when, rule.at) && rule.at > 0 ? std::optional(rule) : std::nullopt;
}

std::vector<sim_chunk> sim_send(sim_faults& faults, std::string bytes)
{
    ++faults.count;
    for (const sim_fault_rule& rule : faults.rules) {
        if (!applies(rule, faults.count, faults.seed))
            continue;
        const std::size_t half = bytes.size() / 2;
        switch (rule.what) {
        case sim_fault::drop: return {};
        case sim_fault::delay: return {{rule.seconds, std::move(bytes)}};
        case sim_fault::corrupt:
            if (!bytes.empty())
                bytes[half] = static_cast<char>(bytes[half] ^ 0x21);
            return {{0, std::move(bytes)}};
        case sim_fault::split:
            return {{0, bytes.substr(0, half)}, {rule.seconds, bytes.substr(half)}};
        case sim_fault::repeat: return {{0, bytes}, {0, bytes}};
        case sim_fault::shorten: return {{0, bytes.substr(0, half)}};
        }
    }
    return {{0, std::move(bytes)}};
}

} // namespace velkoro
