#include "common/gzip_reader.h"

#include <fmt/format.h>
#include <zlib.h>

#include <cerrno>

#include "common/code_page.h"
#include "common/run_error.h"

namespace norvane {

namespace {

constexpr std::size_t block_bytes = std::size_t{1} << 18;
/// Far longer than any line of a list of airports.
constexpr std::size_t longest_line = std::size_t{1} << 20;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";

}  // namespace

void Gzip_Reader::Close_File::operator()(gzFile_s* file) const {
    ::gzclose_r(file);
}

Gzip_Reader::Gzip_Reader(const std::filesystem::path& file, std::size_t at_most_bytes)
    : m_name(file), m_at_most_bytes(at_most_bytes), m_block(block_bytes) {
    errno = 0;
    m_file.reset(::gzopen(file.c_str(), "rbe"));
    if (!m_file)
        throw File_Error(errno == 0 ? ENOMEM : errno, From_Path(file));
}

void Gzip_Reader::Refuse(const std::string& why) const {
    throw Broken_Content(
        error_number::device_io_error,
        fmt::format("{}: {}, after line {}", From_Path(m_name), why, m_line_number));
}

bool Gzip_Reader::Has_More() {
    if (!m_rest.empty())
        return true;
    const int got = ::gzread(m_file.get(), m_block.data(), static_cast<unsigned>(m_block.size()));
    if (got <= 0) {
        const int reason = errno;
        int status = Z_OK;
        ::gzerror(m_file.get(), &status);
        if (status == Z_ERRNO)
            throw File_Error(reason, From_Path(m_name));
        if (status == Z_MEM_ERROR)
            throw File_Error(ENOMEM, From_Path(m_name));
        if (status == Z_BUF_ERROR)
            Refuse("The packed file is cut short");
        if (got < 0)
            Refuse("The packed file is damaged");
        return false;
    }
    m_rest = {m_block.data(), static_cast<std::size_t>(got)};
    m_read_bytes += m_rest.size();
    if (m_read_bytes > m_at_most_bytes)
        Refuse(fmt::format("The file is larger than {} bytes", m_at_most_bytes));
    return true;
}

bool Gzip_Reader::Next() {
    if (!Has_More())
        return false;
    m_line.clear();
    while (Has_More()) {
        const auto end = m_rest.find_first_of("\r\n");
        m_line.append(m_rest.substr(0, end));
        if (m_line.size() > longest_line)
            Refuse("A line does not end");
        if (end == std::string_view::npos) {
            m_rest = {};
            continue;
        }
        const bool carriage_return = m_rest[end] == '\r';
        m_rest.remove_prefix(end + 1);
        if (carriage_return && Has_More() && m_rest.front() == '\n')
            m_rest.remove_prefix(1);
        break;
    }
    if (m_line_number == 0 && m_line.starts_with(byte_order_mark))
        m_line.erase(0, byte_order_mark.size());
    ++m_line_number;
    return true;
}

}  // namespace norvane
