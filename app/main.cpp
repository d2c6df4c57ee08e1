/// velkoro, the desktop program.
#include "app/compose.h"
#include "app/picture.h"
#include "comm/libusb_pipes.h"
#include "comm/serial_line.h"
#include "core/code_page.h"
#include "core/platform.h"
#include "core/program_folder.h"
#include "core/settings.h"
#include "core/shell.h"
#include "ui/binder.h"
#include "ui/look.h"
#include "ui/qt_platform.h"

#include <QApplication>
#include <QIcon>

#include <clocale>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace {

struct options {
    std::string home{}, language{}, picture{}, file{};
    bool help = false, version = false;
    bool once = false;   ///< ends when the main window has been painted, for measuring the start
    std::string wrong{}; ///< the argument that is not understood
};

constexpr const char* usage =
    "usage: velkoro [--home DIR] [--lang N] [--picture FILE] [--once] [PATH]\n";

/// Qt has taken its own options away by now. `--name value` and `--name=value` are the same.
options read_options(const std::vector<std::string>& arguments)
{
    options o;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        std::string name = arguments[i];
        std::string* value = nullptr;
        std::string given;
        bool has_value = false;
        if (const auto equals = name.find('=');
            name.starts_with("--") && equals != std::string::npos) {
            given = name.substr(equals + 1);
            name.resize(equals);
            has_value = true;
        }
        if (name == "--home")
            value = &o.home;
        else if (name == "--lang")
            value = &o.language;
        else if (name == "--picture")
            value = &o.picture;
        else if (name == "--once")
            o.once = true;
        else if (name == "--help" || name == "-h")
            o.help = true;
        else if (name == "--version")
            o.version = true;
        else if (!name.starts_with("-") && o.file.empty())
            o.file = name;
        else
            o.wrong = arguments[i];
        if (!value)
            continue;
        if (has_value)
            *value = given;
        else if (i + 1 < arguments.size())
            *value = arguments[++i];
        else
            o.wrong = name;
    }
    return o;
}

/// The start-up changes into the program folder: paths of the command line hold from the folder
/// that the user stands in.
std::string absolute(const std::string& path)
{
    std::error_code gone;
    const auto full = std::filesystem::absolute(path, gone);
    return path.empty() || gone ? path : full.string();
}

/// A bare name that is not here may lie in the folder of the last file; the program looks there.
std::string command_line_of(const std::string& file)
{
    const bool bare = file.find('/') == std::string::npos;
    std::error_code gone;
    return bare && !std::filesystem::exists(file, gone) ? file : absolute(file);
}

bool asks_for_style(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        if (std::strncmp(argv[i], "-style", 6) == 0 || std::strncmp(argv[i], "--style", 7) == 0)
            return true;
    return qEnvironmentVariableIsSet("QT_STYLE_OVERRIDE");
}

} // namespace

int main(int argc, char** argv)
{
    using namespace velkoro;
    const bool own_style = asks_for_style(argc, argv);
    QApplication app(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // Qt has taken over the locale of the environment
    QApplication::setApplicationName(QStringLiteral("VELkoro"));
    QApplication::setDesktopFileName(QStringLiteral("velkoro"));
    QApplication::setQuitOnLastWindowClosed(false); // the shutdown sequence ends the program

    const options o = read_options({argv, argv + argc});
    if (!o.wrong.empty()) {
        std::fprintf(stderr, "velkoro: %s is not understood\n%s", o.wrong.c_str(), usage);
        return 2;
    }
    if (o.help) {
        std::fputs(usage, stdout);
        return 0;
    }
    if (o.version) {
        std::puts("velkoro " VELKORO_VERSION);
        return 0;
    }

    look_install(app, own_style);
    QApplication::setWindowIcon(
        QIcon::fromTheme(QStringLiteral("velkoro"), QIcon(QStringLiteral(":/velkoro.svg"))));
    qt_platform_install();
    serial_line_install();
    libusb_pipes_install();
    set_program_folder(o.home);
    if (!o.language.empty())
        settings.overrides[{"main", "lang3"}] = o.language;
    const std::string picture = absolute(o.picture);
    if (!picture.empty() || o.once) {
        // These are jobs without a user: they neither ask nor meet a running instance.
        platform.instance_running = [] { return false; };
        platform.instance_listen = [](const auto&) {};
        platform.screen = [] { return std::nullopt; };
        platform.message = [](const message_box& m) {
            std::fprintf(stderr, "%s\n", to_utf8(m.text).c_str());
            return platform_table().message(m);
        };
    }
    compose();
    int result = 0;
    const bool stays = shell_start(command_line_of(o.file));
    binder_flush(); // the start-up ran outside every handler
    if (stays && !quit_asked()) {
        if (o.once)
            paint_main_window();
        else if (picture.empty())
            result = QApplication::exec();
        else if (!save_main_picture(picture)) {
            std::fprintf(stderr, "velkoro: %s cannot be written\n", picture.c_str());
            result = 1;
        }
    }
    qt_platform_remove();
    return result;
}
