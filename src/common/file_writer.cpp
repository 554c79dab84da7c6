#include "common/file_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <vector>

#include "common/code_page.h"
#include "common/run_error.h"

namespace norvane {

namespace {

void Write_All(int descriptor, std::string_view bytes, const std::filesystem::path& file) {
    while (!bytes.empty()) {
        const auto written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            throw File_Error(errno, From_Path(file));
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

void Write_Opened(const std::filesystem::path& file, std::string_view content, int flags) {
    const int descriptor = ::open(file.c_str(), flags | O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    if (descriptor < 0)
        throw File_Error(errno, From_Path(file));
    try {
        Write_All(descriptor, content, file);
    } catch (...) {
        ::close(descriptor);
        throw;
    }
    if (::close(descriptor) != 0)
        throw File_Error(errno, From_Path(file));
}

std::filesystem::path Final_Target(const std::filesystem::path& target) {
    std::error_code failure;
    auto resolved = std::filesystem::canonical(target, failure);
    if (!failure)
        return resolved;
    // A link whose file is missing (a drive that is not there, perhaps) stays a link too.
    if (failure == std::errc::no_such_file_or_directory && std::filesystem::is_symlink(target))
        return Final_Target(target.parent_path() / std::filesystem::read_symlink(target));
    return std::filesystem::absolute(target);
}

/// "." + a name + "." + six signs as the system draws them: letters of both cases and digits.
bool Is_Temporary_Name(std::string_view name) {
    constexpr std::size_t drawn = 6;
    if (name.size() < drawn + 3 || name.front() != '.' || name[name.size() - drawn - 1] != '.')
        return false;
    const std::string_view signs = name.substr(name.size() - drawn);
    const auto is_capital = [](char c) { return c >= 'A' && c <= 'Z'; };
    const auto is_other = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); };
    // Six drawn signs are hardly ever a word, and a word is what a pilot writes there.
    return std::all_of(signs.begin(), signs.end(),
                       [&](char c) { return is_capital(c) || is_other(c); }) &&
           std::any_of(signs.begin() + 1, signs.end(), is_capital) &&
           std::any_of(signs.begin(), signs.end(), is_other);
}

mode_t Usual_Mode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

Atomic_File::Atomic_File(const std::filesystem::path& target) : m_target(Final_Target(target)) {
    std::string name = (m_target.parent_path() / ("." + m_target.filename().string())).string();
    name += ".XXXXXX";
    m_descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (m_descriptor < 0)
        throw File_Error(errno, From_Path(m_target));
    m_temporary = name;
    struct stat status {};
    const bool exists = ::stat(m_target.c_str(), &status) == 0;
    // A drive shared with another system may know no modes; what is written there matters more.
    if (::fchmod(m_descriptor, exists ? status.st_mode & 07777 : Usual_Mode()) != 0 &&
        errno != EPERM && errno != ENOTSUP) {
        const int reason = errno;
        Discard();
        throw File_Error(reason, From_Path(m_target));
    }
}

Atomic_File::~Atomic_File() {
    Discard();
}

void Atomic_File::Write(std::string_view bytes) {
    Write_All(m_descriptor, bytes, m_target);
}

void Atomic_File::Commit() {
    if (::fsync(m_descriptor) != 0)
        throw File_Error(errno, From_Path(m_target));
    const int closed = ::close(m_descriptor);
    m_descriptor = -1;
    if (closed != 0 || ::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        throw File_Error(errno, From_Path(m_target));
    }
    m_temporary.clear();
    // The rename itself must reach the disk too; a directory that cannot be flushed is no failure.
    const int directory = ::open(m_target.parent_path().c_str(), O_RDONLY | O_CLOEXEC);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
}

void Atomic_File::Discard() {
    if (m_descriptor >= 0)
        ::close(m_descriptor);
    m_descriptor = -1;
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
    m_temporary.clear();
}

void Sweep_Temporaries(const std::filesystem::path& directory) {
    constexpr std::chrono::hours oldest(24);
    const auto now = std::filesystem::file_time_type::clock::now();
    std::vector<std::filesystem::path> left;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(directory, failure), end;
         !failure && entry != end; entry.increment(failure)) {
        std::error_code unknown;
        const bool is_file =
            entry->symlink_status(unknown).type() == std::filesystem::file_type::regular;
        if (is_file && Is_Temporary_Name(entry->path().filename().string()) &&
            now - entry->last_write_time(unknown) > oldest && !unknown)
            left.push_back(entry->path());
    }
    for (const auto& file : left)
        std::filesystem::remove(file, failure);
}

void Write_File_Atomically(const std::filesystem::path& target, std::string_view content) {
    Atomic_File file(target);
    file.Write(content);
    file.Commit();
}

void Write_File(const std::filesystem::path& file, std::string_view content) {
    Write_Opened(file, content, O_TRUNC);
}

void Append_To_File(const std::filesystem::path& file, std::string_view content) {
    Write_Opened(file, content, O_APPEND);
}

Growing_File::Growing_File(const std::filesystem::path& file)
    : m_file(file),
      m_descriptor(::open(file.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0666)) {
    if (m_descriptor < 0)
        throw File_Error(errno, From_Path(file));
    try {
        Cut_Torn_Line();
    } catch (...) {
        ::close(m_descriptor);
        throw;
    }
}

Growing_File::~Growing_File() {
    ::close(m_descriptor);
}

void Growing_File::Cut_Torn_Line() {
    off_t end = ::lseek(m_descriptor, 0, SEEK_END);
    char last = '\n';
    while (end > 0 && ::pread(m_descriptor, &last, 1, end - 1) == 1 && last != '\n')
        --end;
    if (end < 0 || ::ftruncate(m_descriptor, end) != 0)
        throw File_Error(errno, From_Path(m_file));
}

void Growing_File::Add(std::string_view bytes) {
    const off_t end = ::lseek(m_descriptor, 0, SEEK_END);
    try {
        Write_All(m_descriptor, bytes, m_file);
    } catch (...) {
        // Where that fails too, the next one who opens it does it.
        static_cast<void>(end >= 0 && ::ftruncate(m_descriptor, end));
        throw;
    }
}

void Growing_File::Sync() {
    struct stat status {};
    if (::fdatasync(m_descriptor) != 0 || ::fstat(m_descriptor, &status) != 0)
        throw File_Error(errno, From_Path(m_file));
    if (status.st_nlink == 0)
        throw File_Error(ENOENT, From_Path(m_file));
}

void Copy_File(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
}

}  // namespace norvane
