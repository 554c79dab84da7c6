#include "blackbox/recordings.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <system_error>

#include "common/code_page.h"
#include "common/date_time.h"
#include "common/file_writer.h"
#include "common/gzip_reader.h"
#include "common/run_error.h"
#include "common/services.h"
#include "simlink/recording.h"

namespace norvane {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view plain_ending = ".rec";
constexpr std::string_view packed_ending = ".rec.gz";

/// 2026-11-23_1405: what the name of a recording begins with that Norvane made.
bool Begins_With_Moment(std::string_view id) {
    constexpr std::string_view pattern = "0000-00-00_0000";
    if (id.size() < pattern.size())
        return false;
    return std::equal(pattern.begin(), pattern.end(), id.begin(), [](char wanted, char is) {
        return wanted == '0' ? is >= '0' && is <= '9' : is == wanted;
    });
}

/// A text that puts recordings in the order of their flights. One that the pilot named otherwise
/// counts from when its file was written.
std::string Age_Of(const Recording_File& recording) {
    if (Begins_With_Moment(recording.id))
        return recording.id;
    std::error_code failure;
    const auto written = fs::last_write_time(recording.file, failure);
    const auto moment = failure ? std::chrono::system_clock::time_point()
                                : std::chrono::file_clock::to_sys(written);
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(moment.time_since_epoch()).count();
    const Date_Time utc = Date_Time_Of_Seconds(seconds);
    return Format_Iso_Date(utc.date) + "_" + Format_Hhmm(utc.time) + recording.id;
}

/// Packs what it is given into a file of its own.
class Gzip_Packer {
  public:
    explicit Gzip_Packer(Atomic_File& target) : m_target(target) {
        constexpr int gzip_window = MAX_WBITS + 16;
        constexpr int usual_memory = 8;
        if (::deflateInit2(&m_stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzip_window, usual_memory,
                           Z_DEFAULT_STRATEGY) != Z_OK)
            throw Run_Error(error_number::other, "No memory to pack a recording");
    }
    ~Gzip_Packer() { ::deflateEnd(&m_stream); }
    Gzip_Packer(const Gzip_Packer&) = delete;
    Gzip_Packer& operator=(const Gzip_Packer&) = delete;

    void Add(std::string_view text) { Deflate(text, Z_NO_FLUSH); }
    void Finish() { Deflate({}, Z_FINISH); }

  private:
    void Deflate(std::string_view text, int flush) {
        // The library does not write to what it packs.
        m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
        m_stream.avail_in = static_cast<uInt>(text.size());
        do {
            m_stream.next_out = reinterpret_cast<Bytef*>(m_block.data());
            m_stream.avail_out = static_cast<uInt>(m_block.size());
            ::deflate(&m_stream, flush);
            m_target.Write({m_block.data(), m_block.size() - m_stream.avail_out});
        } while (m_stream.avail_out == 0);
    }

    Atomic_File& m_target;
    z_stream m_stream{};
    std::array<char, 65536> m_block{};
};

}  // namespace

fs::path Flights_Directory(const Services& services) {
    return services.program_directory / "flights";
}

std::string Recording_Id(const fs::path& file) {
    const std::string name = From_Path(file.filename());
    for (const std::string_view ending : {packed_ending, plain_ending}) {
        if (name.size() > ending.size() && name.ends_with(ending) && name.front() != '.')
            return name.substr(0, name.size() - ending.size());
    }
    return {};
}

std::vector<Recording_File> List_Recordings(const fs::path& directory) {
    std::map<std::string, Recording_File> found;
    std::error_code failure;
    for (fs::directory_iterator entry(directory, failure), end; !failure && entry != end;
         entry.increment(failure)) {
        std::error_code unknown;
        const std::string id = Recording_Id(entry->path());
        if (id.empty() || !entry->is_regular_file(unknown))
            continue;
        const bool is_packed = entry->path().extension() == ".gz";
        if (is_packed || !found.contains(id))
            found[id] = {id, entry->path(), is_packed};
    }
    std::vector<Recording_File> recordings;
    recordings.reserve(found.size());
    for (auto& [id, recording] : found)
        recordings.push_back(std::move(recording));
    return recordings;
}

void Pack_Recording(const fs::path& recording, const fs::path& packed) {
    Gzip_Reader lines(recording);
    Atomic_File target(packed);
    Gzip_Packer packer(target);
    while (lines.Next()) {
        packer.Add(lines.Line());
        packer.Add("\n");
    }
    packer.Finish();
    target.Commit();
}

bool Is_Empty_Recording(const fs::path& recording) {
    Gzip_Reader lines(recording);
    if (!lines.Next())
        return true;
    if (lines.Line() != Recording_Head())
        return false;
    while (lines.Next()) {
        if (!lines.Line().empty() && lines.Line().front() != '#')
            return false;
    }
    return true;
}

bool Is_Packed_As(const fs::path& recording, const fs::path& packed) {
    if (!fs::exists(packed))
        return false;
    Gzip_Reader lines(recording);
    Gzip_Reader packed_lines(packed);
    while (lines.Next()) {
        if (!packed_lines.Next() || packed_lines.Line() != lines.Line())
            return false;
    }
    return true;
}

std::size_t Prune(const fs::path& directory, int keep) {
    if (keep < 0)
        return 0;
    std::vector<std::pair<std::string, fs::path>> packed;
    for (const Recording_File& recording : List_Recordings(directory)) {
        if (recording.is_packed)
            packed.emplace_back(Age_Of(recording), recording.file);
    }
    std::sort(packed.begin(), packed.end());
    std::size_t gone = 0;
    for (std::size_t i = 0; i + static_cast<std::size_t>(keep) < packed.size(); ++i) {
        std::error_code failure;
        gone += fs::remove(packed[i].second, failure) ? 1 : 0;
    }
    return gone;
}

}  // namespace norvane
