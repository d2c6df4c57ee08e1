// clang-format off
/// A scripted user for tests: answers message boxes from a list and records what was shown.
///
///     scripted_platform user;              // reset_all(), default hooks, platform under control
///     user.answers = {answer::no};         // for the next boxes in order; then the affirmative one
///     wayp_delete(-1);
///     EXPECT_EQ(user.numbers(), (std::vector<int>{2060}));
///
/// The clock stands at user.time_s and jumps ahead in every pump by the milliseconds waited. The
/// destructor puts back hooks and platform as they were. A test that wants a folder's handlers
/// installs them after the constructor ran.
// clang-format on
#pragma once

#include "core/hooks.h"
#include "core/platform.h"
#include "core/reset.h"
#include "core/texts.h"

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velkoro {

struct scripted_platform {
    // The script.
    std::deque<answer> answers{};
    std::deque<std::optional<std::string>> inputs{}; ///< then Cancel
    std::deque<std::vector<std::string>> files_to_open{};
    std::deque<std::optional<std::string>> files_to_save{};
    std::function<void()> on_pump{};                      ///< what happens inside a pump
    std::function<void(const message_box&)> on_message{}; ///< what happens while a box is open
    double time_s = 36000;                                ///< of the clock: seconds since midnight
    date_time today{2026, 5, 17, 10, 0, 0, 0};
    // The record.
    std::vector<message_box> messages{};
    std::vector<std::string> prompts{};
    std::string clipboard{};
    int pumps = 0, beeps = 0;

    scripted_platform() : saved_platform(platform), saved_hooks(hooks)
    {
        reset_all();
        hooks = {};
        platform = {};
        platform.message = [this](const message_box& m) {
            messages.push_back(m);
            if (on_message)
                on_message(m);
            if (!answers.empty())
                return take(answers);
            return m.buttons == buttons::ok || m.buttons == buttons::ok_cancel ? answer::ok
                                                                               : answer::yes;
        };
        platform.input = [this](const input_box& b) -> std::optional<std::string> {
            prompts.push_back(b.prompt);
            return inputs.empty() ? std::nullopt : take(inputs);
        };
        platform.open_files = [this](const file_request&) {
            return files_to_open.empty() ? std::vector<std::string>{} : take(files_to_open);
        };
        platform.save_file = [this](const file_request&) -> std::optional<std::string> {
            return files_to_save.empty() ? std::nullopt : take(files_to_save);
        };
        platform.pump = [this](int ms) {
            ++pumps;
            time_s += ms / 1000.0;
            if (on_pump)
                on_pump();
        };
        platform.clock = platform.ticks = [this] { return time_s; };
        platform.now = [this] { return today; };
        platform.clipboard = [this] { return clipboard; };
        platform.set_clipboard = [this](const std::string& text) { clipboard = text; };
        platform.beep = [this] { ++beeps; };
    }
    ~scripted_platform()
    {
        platform = saved_platform;
        hooks = saved_hooks;
        reset_all();
    }
    scripted_platform(const scripted_platform&) = delete;
    scripted_platform& operator=(const scripted_platform&) = delete;

    /// A text table in memory, for tests that look at numbers and parameters: text(2031, "2", "A")
    /// is "2031 2 A #".
    static void plain_texts()
    {
        text_table = {};
        text_table.languages = {"plain"};
        text_table.loaded = 0;
        for (int n = 0; n < 10000; ++n)
            text_table.texts.push_back(std::to_string(n) + " # # #");
    }
    /// Text numbers of the boxes shown, in order.
    std::vector<int> numbers() const
    {
        std::vector<int> out;
        for (const message_box& m : messages)
            out.push_back(m.number);
        return out;
    }
    int count(int number) const
    {
        int n = 0;
        for (const message_box& m : messages)
            n += m.number == number;
        return n;
    }

private:
    template <class T> static T take(std::deque<T>& list)
    {
        T front = std::move(list.front());
        list.pop_front();
        return front;
    }
    platform_table saved_platform;
    hook_table saved_hooks;
};

} // namespace velkoro
