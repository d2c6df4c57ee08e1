/// The whole desktop program in a folder of its own, driven as its user drives it: keys, mouse,
/// menu entries, real boxes and windows. Only the toolkit's file dialogs and the line input are
/// scripted.
#pragma once

#include "app/compose.h"
#include "core/hooks.h"
#include "tests/support/program_folder.h"
#include "tests/ui/ui_fixture.h"
#include "ui/list_view.h"

#include <QTimer>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velkoro::test {

/// What the program keeps in its stores, in an order that does not depend on the list's.
struct stored_data {
    std::string title{};
    std::vector<wayp_rec> waypoints{};
    std::vector<route_rec> routes{};
    bool operator==(const stored_data&) const = default;
};
stored_data stored_now();

class ProgramTest : public UiTest {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Starts the program; false when it hands over to another one.
    bool start(const std::string& command_line = {});
    /// Ends it without any question and starts it again in the same folder.
    void start_again(const std::string& command_line = {});
    /// Runs the toolkit's main loop, in which `act` happens, until the program ends or 5 s are
    /// over. True when it has ended.
    static bool run_main_loop(const std::function<void()>& act);
    static void to_front();
    /// Serves events for that time, or until the condition holds.
    static bool wait_for(const std::function<bool()>& condition, int ms = 3000);

    static QWidget& top() { return *widget_of(Form1.form); }
    static list_view& list() { return *dynamic_cast<list_view*>(widget_of(Form1.Waypl2)); }
    static row_list& rows() { return Form1.Waypl2.rows; }
    /// Chooses an entry as by its menu: nothing happens when it cannot be chosen.
    static void choose(const control& entry);
    static void click_row(int row, Qt::KeyboardModifiers keys = {});
    static void drop(const std::vector<std::string>& paths);
    static std::vector<int> marks();
    static int row_named(const std::string& key);
    std::string file(const std::string& name) const { return (home->path / name).string(); }
    std::vector<std::string> shown_texts() const { return texts_; }

    std::optional<program_folder> home{};
    std::string link{};
    std::deque<answer> answers{}; ///< for the next boxes; then their closing answer
    std::deque<std::vector<std::string>> to_open{}; ///< for the dialogs, then Cancel
    std::deque<std::optional<std::string>> to_save{}, inputs{};
    std::vector<file_request> requests{};

private:
    void answer_boxes();
    void use_file_window();
    bool browsing_ = false;
    hook_table saved_hooks_{};
    std::vector<std::string> texts_{}; ///< of every box and result window, in order
    QTimer user_{};
};

} // namespace velkoro::test
