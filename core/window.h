/// Windows as models of named controls.
/// A window is a plain struct of control records under their fixed names, with its handlers; one
/// generic binder shows it. Logic writes plain fields; nobody is notified: the binder compares what
/// it last showed with the record at every flush. All text is Windows-1252; control and window
/// names are identifiers and are UTF-8.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace velkoro {

enum class kind {
    label,
    text,
    check,
    option,
    combo,
    list,
    button,
    slider,
    frame,
    menu,
    timer,
    picture,
    bar
};

/// Colour as 0xBBGGRR, in the order that settings hold it.
inline constexpr std::uint32_t own_colour = 0xFFFFFFFF; ///< the colour that the style gives

/// What the user sees of a control; plain values.
struct look {
    std::string caption{}; ///< with "&" before the access letter
    std::string text{};    ///< content of a text field; of a window: stands ahead of its caption
    std::string tooltip{};
    std::string tag{};                 ///< "n" or "n m": text numbers of caption and tool tip
    std::vector<std::string> items{};  ///< entries of a drop-down
    int selected = -1;                 ///< its chosen entry, -1 none
    int value = 0, min = 0, max = 100; ///< sliders and bars; `value` is also a timer's period in ms
    bool checked = false, enabled = true, visible = true;
    std::uint32_t back = own_colour;
    bool operator==(const look&) const = default;
};

struct list_column {
    std::string heading{};
    int width = 100;    ///< logical pixels
    bool right = false; ///< numbers are right-aligned, the heading like its column
    bool stretch = false;
    bool visible = true;
    bool operator==(const list_column&) const = default;
};

/// One row of a list. Its key text is "I" followed by `data`. Cells are built when shown by
/// row_list::cell, or stand in `cells`.
struct list_row {
    std::int32_t data = 0; ///< store index or what the window's logic wants
    bool marked = false;
    std::string sort{}; ///< hidden sort text
    std::vector<std::string> cells{};
    bool operator==(const list_row&) const = default;
};

/// Rows of a list control. Whoever changes rows, marks, columns or anything that the cells show
/// raises `version`.
struct row_list {
    std::vector<list_row> rows{};
    std::vector<list_column> columns{};
    std::uint64_t version = 0;
    int current = -1;     ///< row with the focus, -1 none
    int show_row = -1;    ///< asked to be brought into view; the binder sets it back to -1
    int sort_column = -1; ///< column whose heading bears the sort arrow, -1 none
    bool sort_down = false;
    bool edit_names = false; ///< column 0 can be edited in place
    std::function<std::string(int row, int column)>
        cell{}; ///< text of a cell; empty: list_row::cells
    std::function<std::string(int row, int column)>
        glyph{}; ///< name of an SVG before the text ("g_flag"), "" none
    std::function<bool(int row, int column)> dim{}; ///< true: the text stands back (missing values)
    /// Call after every change.
    void changed() { ++version; }
};

struct window;

/// One control. It registers itself in its window, so it is neither copied nor moved.
struct control : look {
    const char* name;
    int index; ///< position in a control array, -1 for a single control
    enum kind kind;
    window* form;
    control* in = nullptr; ///< the menu that holds this entry
    row_list rows{};
    look design{}; ///< the look at construction; a closed window reopens from it
    // Run for the user's actions only, never for writes by the program.
    std::function<void()> click{}, change{}, tick{}, right_click{}, resized{};
    std::function<void(int row)> row_click{}, row_open{};
    std::function<void(int column)> header_click{};
    std::function<void(int row, const std::string& text)> label_edited{};
    std::function<bool(int key, bool ctrl, bool shift)> key{}; ///< Qt::Key numbers; true: handled
    std::function<void(const std::vector<std::string>& paths)> files_dropped{};

    control(window& w, enum kind k, const char* n, look l = {}, int i = -1);
    control(window& w, control& menu, const char* n, look l = {},
            int i = -1); ///< an entry of a menu
    control(const control&) = delete;
    control& operator=(const control&) = delete;
    ~control();
};

struct window : look {
    const char* name;
    bool modal = false;
    bool keeps_state = false;   ///< reopens as it was closed instead of from its design
    window* docks_to = nullptr; ///< the window it docks to
    double left = -1, top = -1, width = -1, height = -1; ///< -1: not yet placed; logical pixels
    bool maximised = false;
    bool modified = false;    ///< the platform's mark of unsaved data
    bool shown = false;       ///< open; closing is `shown = false`
    control* focus = nullptr; ///< asked to get the focus; the binder sets it back
    std::vector<control*> controls{};
    look design{};
    std::function<void()> load{};     ///< before it is shown for the first time since it was closed
    std::function<void()> activate{}; ///< after it is shown; a modal window's job runs here
    /// A close request (title bar, Alt+F4, Escape): true closes. Default: closes unless `no_close`.
    std::function<bool()> query_close{};
    std::function<void()> closed{};
    /// After its texts were set in another language: refill drop-downs, texts with parameters.
    std::function<void()> translated{};
    bool no_close = false; ///< no close box

    window(const char* n, std::string cap, std::string tag_numbers = {});
    window(const window&) = delete;
    window& operator=(const window&) = delete;
    ~window();
    /// The control of that name and index, nullptr when there is none.
    control* find(std::string_view control_name, int control_index = -1) const;
};

/// Every window of the program, in order of construction.
const std::vector<window*>& all_windows();

/// Opens a window modally: from its design (unless it keeps its state), load, translation, shown,
/// activate, then waits until it is closed.
void run_window(window& w);
/// Opens a modeless window or brings it forward.
void open_window(window& w);
/// Asks query_close and closes. False when it stays open.
bool close_window(window& w);

} // namespace velkoro
