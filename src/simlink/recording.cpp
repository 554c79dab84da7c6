#include "simlink/recording.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <utility>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/gzip_reader.h"
#include "common/number.h"
#include "common/run_error.h"
#include "common/text.h"
#include "simlink/offset_area.h"

namespace norvane {

namespace {

constexpr std::string_view first_line = "norvane-recording 1";
/// More than any flight takes; beyond it three decimals would no longer be told apart.
constexpr double most_seconds = 1e9;
constexpr std::size_t longest_excerpt = 40;

/// The beginning of a faulty piece, fit for a message.
std::string Excerpt(std::string_view piece) {
    std::string shown(piece.substr(0, longest_excerpt));
    for (char& c : shown) {
        if (c < ' ' || c > '~')
            c = '?';
    }
    return "\"" + shown + (piece.size() > longest_excerpt ? "...\"" : "\"");
}

/// A number of `digits` hexadecimal digits; negative when they are none.
int Hex_Number(std::string_view digits) {
    int value = 0;
    const auto [end, failure] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    const bool whole = failure == std::errc() && end == digits.data() + digits.size();
    return whole && digits.front() != '-' ? value : -1;
}

/// One file being read, for its messages.
class Recording_Reader {
  public:
    explicit Recording_Reader(const std::filesystem::path& file) : m_file(file), m_lines(file) {}

    std::vector<Recorded_Moment> Read() {
        if (!m_lines.Next() || m_lines.Line() != first_line)
            Refuse("the first line is not \"" + std::string(first_line) + "\"");
        std::vector<Recorded_Moment> moments;
        std::vector<std::string> remarks;
        while (m_lines.Next()) {
            if (m_lines.Line().empty())
                continue;
            if (m_lines.Line().front() == '#') {
                remarks.push_back(Remark(m_lines.Line()));
                continue;
            }
            moments.push_back(Moment());
            moments.back().remarks = std::exchange(remarks, {});
            if (moments.size() > 1 && moments.back().seconds < moments[moments.size() - 2].seconds)
                Refuse("the moment is earlier than the one before");
        }
        if (moments.empty())
            Refuse("the recording holds no moment");
        return moments;
    }

  private:
    [[noreturn]] void Refuse(const std::string& fault) const {
        throw Broken_Content(error_number::device_io_error,
                             fmt::format("{}, line {}: {}", From_Path(m_file),
                                         std::max<std::size_t>(m_lines.Line_Number(), 1), fault));
    }

    static std::string Remark(std::string_view line) {
        line.remove_prefix(line.starts_with("# ") ? 2 : 1);
        return std::string(line);
    }

    Recorded_Moment Moment() const {
        std::string_view rest = m_lines.Line();
        const std::string_view seconds_text = Before(rest, " ");
        const auto seconds = Parse_Number(seconds_text);
        if (!seconds || *seconds < 0 || *seconds > most_seconds)
            Refuse(Excerpt(seconds_text) + " is no number of seconds");
        Recorded_Moment moment{*seconds, {}};
        rest.remove_prefix(seconds_text.size());
        while (!rest.empty()) {
            rest.remove_prefix(1);
            const std::string_view piece = Before(rest, " ");
            if (!piece.empty())
                moment.changes.push_back(Change(piece));
            rest.remove_prefix(piece.size());
        }
        return moment;
    }

    Recorded_Change Change(std::string_view piece) const {
        constexpr std::size_t offset_digits = 4;
        if (piece.size() < offset_digits + 3 || piece[offset_digits] != ':' ||
            piece.size() % 2 == 0)
            Refuse(Excerpt(piece) + " is no OFFSET:BYTES");
        const int offset = Hex_Number(piece.substr(0, offset_digits));
        if (offset < 0)
            Refuse(Excerpt(piece) + " begins with no offset");
        Recorded_Change change{static_cast<std::uint32_t>(offset), {}};
        for (std::size_t i = offset_digits + 1; i < piece.size(); i += 2) {
            const int value = Hex_Number(piece.substr(i, 2));
            if (value < 0)
                Refuse(Excerpt(piece) + " holds what is no hexadecimal byte");
            change.bytes.push_back(static_cast<std::byte>(value));
        }
        if (change.offset + change.bytes.size() > Offset_Area::size)
            Refuse(Excerpt(piece) + " reaches beyond offset FFFF");
        return change;
    }

    const std::filesystem::path& m_file;
    Gzip_Reader m_lines;
};

}  // namespace

std::vector<Recorded_Moment> Read_Recording(const std::filesystem::path& file) {
    return Recording_Reader(file).Read();
}

std::string Recording_Head() {
    return std::string(first_line);
}

std::string Recording_Lines(const Recorded_Moment& moment) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string lines;
    for (const std::string& remark : moment.remarks)
        lines += "# " + remark + "\n";
    lines += Format_Fixed(moment.seconds, 3);
    for (const Recorded_Change& change : moment.changes) {
        lines += fmt::format(" {:04X}:", change.offset);
        for (const std::byte value : change.bytes) {
            lines += digits[std::to_integer<std::size_t>(value >> 4)];
            lines += digits[std::to_integer<std::size_t>(value & std::byte{15})];
        }
    }
    return lines + "\n";
}

Recording_Writer::Recording_Writer(std::filesystem::path file) : m_file(std::move(file)) {
    Write_File(m_file, Recording_Head() + "\n");
}

void Recording_Writer::Add(const Recorded_Moment& moment) {
    Append_To_File(m_file, Recording_Lines(moment));
}

}  // namespace norvane
