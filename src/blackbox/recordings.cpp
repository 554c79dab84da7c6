#include "blackbox/recordings.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <system_error>

#include "common/code_page.h"
#include "common/date_time.h"
#include "common/file_writer.h"
#include "common/gzip_reader.h"
#include "common/gzip_writer.h"
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
    Gzip_Writer writer(target);
    while (lines.Next()) {
        writer.Add(lines.Line());
        writer.Add("\n");
    }
    writer.Finish();
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
    Gzip_Reader lines(recording);
    try {
        Gzip_Reader packed_lines(packed);
        while (lines.Next()) {
            if (!packed_lines.Next() || packed_lines.Line() != lines.Line())
                return false;
        }
        return true;
    } catch (const Run_Error&) {
        // Not there, or damaged: it is packed anew, under another name if need be.
        return false;
    }
}

std::vector<Recording_File> Recordings_Beyond(const fs::path& directory, int keep) {
    std::vector<std::pair<std::string, Recording_File>> packed;
    for (Recording_File& recording : List_Recordings(directory)) {
        if (recording.is_packed)
            packed.emplace_back(Age_Of(recording), std::move(recording));
    }
    std::ranges::sort(packed, {}, [](const auto& recording) { return recording.first; });
    std::vector<Recording_File> beyond;
    for (std::size_t i = 0; keep >= 0 && i + static_cast<std::size_t>(keep) < packed.size(); ++i)
        beyond.push_back(std::move(packed[i].second));
    return beyond;
}

}  // namespace norvane
