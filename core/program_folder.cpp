#include "core/program_folder.h"

#include "core/files.h"
#include "core/text_tools.h"

#include <cstdlib>
#include <filesystem>
#include <set>
#include <system_error>

namespace velkoro {
namespace {

namespace fs = std::filesystem;

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string with_slash(std::string folder)
{
    if (folder.empty())
        return "./";
    if (folder.back() != '/')
        folder += '/';
    return folder;
}

bool is_file(const fs::path& path)
{
    std::error_code none;
    return fs::is_regular_file(path, none);
}

/// Files that follow the installed program, since nobody changes them in place.
bool follows_installation(const fs::path& name)
{
    const std::string extension = lower(name.extension().string());
    return extension == ".res" || extension == ".html" || name == "index.txt";
}

std::set<std::string> names_in(const fs::path& folder)
{
    std::set<std::string> names;
    std::error_code error;
    for (fs::directory_iterator i(folder, error), end; !error && i != end; i.increment(error))
        names.insert(lower(i->path().filename().string()));
    return names;
}

void copy_missing(const fs::path& from, const fs::path& to)
{
    std::error_code error;
    fs::create_directories(to, error);
    const std::set<std::string> present = names_in(to);
    for (fs::directory_iterator i(from, error), end; !error && i != end; i.increment(error)) {
        std::error_code ignored;
        const fs::path name = i->path().filename();
        if (i->is_directory(ignored)) {
            copy_missing(i->path(), to / name);
            continue;
        }
        const std::string plain = lower(name.string());
        const std::string user_table = lower(fs::path(name).replace_extension(".ini").string());
        if (plain.ends_with(".ins") && present.contains(user_table))
            continue;
        if (!present.contains(plain))
            fs::copy_file(i->path(), to / name, ignored);
        else if (follows_installation(name) && is_file(to / name)) {
            const auto theirs = fs::last_write_time(i->path(), ignored);
            const auto ours = fs::last_write_time(to / name, ignored);
            if (!ignored && theirs > ours)
                fs::copy_file(i->path(), to / name, fs::copy_options::overwrite_existing, ignored);
        }
    }
}

} // namespace

folder_question folder_question_of_process(std::string_view home)
{
    folder_question q;
    q.named = home.empty() ? environment("VELKORO_HOME") : std::string(home);
    std::error_code error;
    q.executable = fs::read_symlink("/proc/self/exe", error).parent_path().string();
    q.data_home = environment("XDG_DATA_HOME");
    if (q.data_home.empty() || q.data_home.front() != '/') // a relative one is to be ignored
        q.data_home = environment("HOME") + "/.local/share";
    q.installed.push_back(q.executable + "/../share/velkoro");
    std::string rest = environment("XDG_DATA_DIRS");
    if (rest.empty())
        rest = "/usr/local/share:/usr/share";
    while (!rest.empty()) {
        const std::string folder = cut_token(rest, ":");
        if (!folder.empty() && folder.front() == '/')
            q.installed.push_back(folder + "/velkoro");
    }
    return q;
}

std::string find_program_folder(const folder_question& question)
{
    if (!question.named.empty())
        return with_slash(question.named);
    if (is_file(fs::path(question.executable) / "velkoro.res"))
        return with_slash(question.executable);
    const std::string own = with_slash(question.data_home) + "velkoro/";
    for (const std::string& candidate : question.installed)
        if (is_file(fs::path(candidate) / "velkoro.res")) {
            complete_program_folder(candidate, own);
            break;
        }
    return own;
}

void complete_program_folder(const std::string& installed, const std::string& folder)
{
    copy_missing(installed, folder);
}

void set_program_folder(std::string_view home)
{
    std::error_code error;
    folders.start = with_slash(fs::current_path(error).string());
    // Absolute, so that it stays right when the program changes into it.
    folders.program =
        with_slash(fs::absolute(find_program_folder(folder_question_of_process(home)), error)
                       .lexically_normal()
                       .string());
}

} // namespace velkoro
