#include "core/files.h"

#include "core/code_page.h"
#include "core/text_tools.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace velkoro {
namespace {

namespace fs = std::filesystem;

bool exists_as_written(const std::string& path)
{
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0;
}

/// Names compare equal when this is equal: settings hold Windows-1252, the folder gives UTF-8.
std::string folded(std::string_view name)
{
    std::size_t unmapped = 0;
    const std::string text = is_utf8(name) ? from_utf8(name, &unmapped) : std::string(name);
    return lower(unmapped == 0 ? std::string_view(text) : name);
}

/// The entry of the folder that equals the name case-blind, the first one by its bytes; "" if none.
std::string find_entry(const std::string& folder, std::string_view name)
{
    const std::string want = folded(name);
    std::string best;
    std::error_code ec;
    for (fs::directory_iterator it(folder.empty() ? "." : folder, ec), end; !ec && it != end;
         it.increment(ec)) {
        const std::string entry = it->path().filename().string();
        if ((best.empty() || entry < best) && folded(entry) == want)
            best = entry;
    }
    return best;
}

/// The path for the system's calls: as written when that exists, else with "/" for "\".
std::string system_path(std::string_view path)
{
    std::string out(path);
    if (out.find('\\') != std::string::npos && !exists_as_written(out))
        std::ranges::replace(out, '\\', '/');
    return out;
}

[[noreturn]] void throw_file_error(std::string_view path, int error)
{
    throw std::runtime_error(shown_path(path) + ": " + std::strerror(error));
}

struct close_file {
    void operator()(std::FILE* f) const { std::fclose(f); }
};
using file_ptr = std::unique_ptr<std::FILE, close_file>;

/// Writes all bytes and closes; the errno of the first failure, 0 when all went well.
int write_and_close(file_ptr f, std::string_view bytes)
{
    if (!f)
        return errno;
    int error = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), f.get()) != bytes.size())
        error = errno != 0 ? errno : EIO;
    if (std::fclose(f.release()) != 0 && error == 0)
        error = errno;
    return error;
}

} // namespace

std::string real_path(std::string_view path)
{
    std::string slashed(path);
    std::ranges::replace(slashed, '\\', '/');
    if (slashed.empty() || exists_as_written(slashed))
        return slashed;
    std::string found;
    for (std::size_t at = 0; at < slashed.size();) {
        const std::size_t end = std::min(slashed.find('/', at), slashed.size());
        const std::string part = slashed.substr(at, end - at);
        const std::string rest = slashed.substr(end);
        if (part.empty() || exists_as_written(found + part)) {
            found += part;
        } else {
            const std::string entry = find_entry(found, part);
            if (entry.empty())
                return found + part + rest;
            found += entry;
        }
        if (end < slashed.size())
            found += '/';
        at = end + 1;
    }
    return found;
}

std::string program_path(std::string_view name)
{
    const bool absolute = !name.empty() && (name.front() == '/' || name.front() == '\\');
    return real_path(absolute ? std::string(name) : folders.program + std::string(name));
}

std::string shown_path(std::string_view path)
{
    return is_utf8(path) ? from_utf8(path) : std::string(path);
}

bool file_exists(std::string_view path)
{
    struct stat st {};
    return ::stat(system_path(path).c_str(), &st) == 0 && !S_ISDIR(st.st_mode);
}

std::optional<std::string> read_file(std::string_view path)
{
    const std::string name = system_path(path);
    const file_ptr f(std::fopen(name.c_str(), "rb"));
    struct stat st {};
    if (!f || ::fstat(::fileno(f.get()), &st) != 0 || S_ISDIR(st.st_mode))
        return std::nullopt;
    // The size is a hint only: pipes have none, and a file may grow while it is read.
    std::string bytes(S_ISREG(st.st_mode) ? static_cast<std::size_t>(st.st_size) + 1 : 65536, '\0');
    std::size_t used = 0;
    while (true) {
        used += std::fread(bytes.data() + used, 1, bytes.size() - used, f.get());
        if (used < bytes.size())
            break;
        bytes.resize(bytes.size() * 2);
    }
    if (std::ferror(f.get()) != 0)
        return std::nullopt;
    bytes.resize(used);
    return bytes;
}

void write_file(std::string_view path, std::string_view bytes)
{
    std::string name = system_path(path);
    struct stat st {};
    const bool there = ::stat(name.c_str(), &st) == 0;
    if (there && !S_ISREG(st.st_mode)) { // a device or pipe cannot be replaced
        if (const int e = write_and_close(file_ptr(std::fopen(name.c_str(), "wb")), bytes))
            throw_file_error(path, e);
        return;
    }
    std::error_code ec;
    if (there && fs::is_symlink(name, ec)) // the link stays, its target gets the bytes
        if (const fs::path target = fs::canonical(name, ec); !ec)
            name = target.string();
    const std::string temporary = name + "." + std::to_string(::getpid()) + ".tmp";
    int e = write_and_close(file_ptr(std::fopen(temporary.c_str(), "wb")), bytes);
    if (e == 0 && there)
        ::chmod(temporary.c_str(), st.st_mode & 07777);
    if (e == 0 && std::rename(temporary.c_str(), name.c_str()) != 0)
        e = errno;
    if (e != 0) {
        std::remove(temporary.c_str());
        throw_file_error(path, e);
    }
}

void append_file(std::string_view path, std::string_view bytes)
{
    if (const int e = write_and_close(file_ptr(std::fopen(system_path(path).c_str(), "ab")), bytes))
        throw_file_error(path, e);
}

bool delete_file(std::string_view path)
{
    return file_exists(path) && std::remove(system_path(path).c_str()) == 0;
}

void rename_file(std::string_view from, std::string_view to)
{
    if (std::rename(system_path(from).c_str(), system_path(to).c_str()) != 0)
        throw_file_error(shown_path(from) + " -> " + shown_path(to), errno);
}

std::int64_t file_time(std::string_view path)
{
    struct stat st {};
    return ::stat(system_path(path).c_str(), &st) == 0 ? static_cast<std::int64_t>(st.st_mtime)
                                                       : -1;
}

std::string path_folder(std::string_view path)
{
    const std::size_t at = path.find_last_of("/\\");
    return at == std::string_view::npos ? std::string() : std::string(path.substr(0, at + 1));
}

std::string path_name(std::string_view path)
{
    const std::size_t at = path.find_last_of("/\\");
    return std::string(at == std::string_view::npos ? path : path.substr(at + 1));
}

std::string path_extension(std::string_view path)
{
    const std::string name = path_name(path);
    const std::size_t at = name.rfind('.');
    return at == std::string::npos ? std::string() : lower(std::string_view(name).substr(at));
}

} // namespace velkoro
