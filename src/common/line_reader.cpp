#include "common/line_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "common/code_page.h"
#include "common/run_error.h"

namespace norvane {

namespace {

class File_Handle {
  public:
    explicit File_Handle(const std::filesystem::path& file)
        : m_descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~File_Handle() {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    File_Handle(const File_Handle&) = delete;
    File_Handle& operator=(const File_Handle&) = delete;
    [[nodiscard]] int Descriptor() const { return m_descriptor; }

  private:
    int m_descriptor;
};

}  // namespace

std::string Read_File(const std::filesystem::path& file) {
    const File_Handle handle(file);
    struct stat status {};
    if (handle.Descriptor() < 0 || ::fstat(handle.Descriptor(), &status) != 0) {
        throw File_Error(errno, From_Path(file));
    }
    if (S_ISDIR(status.st_mode))
        throw File_Error(EISDIR, From_Path(file));
    // The size is a hint only: what is read counts, for pipes and growing files too.
    std::string content(static_cast<std::size_t>(status.st_size) + 1, '\0');
    std::size_t used = 0;
    for (;;) {
        if (used == content.size())
            content.resize(content.size() * 2);
        const auto got = ::read(handle.Descriptor(), content.data() + used, content.size() - used);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw File_Error(errno, From_Path(file));
        if (got == 0)
            break;
        used += static_cast<std::size_t>(got);
    }
    content.resize(used);
    return content;
}

Line_Reader::Line_Reader(std::string_view content) : m_rest(content) {
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (m_rest.starts_with(byte_order_mark))
        m_rest.remove_prefix(byte_order_mark.size());
}

bool Line_Reader::Next() {
    if (m_rest.empty())
        return false;
    ++m_line_number;
    if (m_from_line_feed > m_rest.size()) {
        const auto place = m_rest.find('\n');
        m_from_line_feed = place == std::string_view::npos ? 0 : m_rest.size() - place;
    }
    std::size_t end = m_rest.size() - m_from_line_feed;
    const auto* carriage_return = static_cast<const char*>(std::memchr(m_rest.data(), '\r', end));
    if (carriage_return != nullptr)
        end = static_cast<std::size_t>(carriage_return - m_rest.data());
    m_line = m_rest.substr(0, end);
    const bool pair = m_rest.substr(end).starts_with("\r\n");
    const std::size_t taken = end + (pair ? 2 : 1);
    m_rest = taken < m_rest.size() ? m_rest.substr(taken) : std::string_view();
    return true;
}

std::vector<std::string> Read_Lines(const std::filesystem::path& file) {
    const std::string content = Read_File(file);
    std::vector<std::string> lines;
    for (Line_Reader reader(content); reader.Next();)
        lines.emplace_back(reader.Line());
    return lines;
}

}  // namespace norvane
