#include "app/shipped_files.h"

#include <fmt/format.h>
#include <zlib.h>

#include <array>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/run_error.h"
#include "common/text.h"

namespace norvane {

namespace fs = std::filesystem;

namespace {

/// Those of the shipped files that are the pilot's to change; the others are used where they are.
constexpr std::array<const char*, 3> pilots_own{"bin", "VA", "nv.html"};

constexpr const char* manifest_name = "shipped.txt";

/// A file as it was shipped last.
struct Shipped_File {
    std::string size;
    /// When it was written where it is shipped, in the file system's own count.
    std::string written;
    /// Eight hexadecimal digits.
    std::string crc32;

    bool operator==(const Shipped_File&) const = default;
};

/// By the name below the program directory.
using Manifest = std::map<std::string, Shipped_File>;

/// A line a file: size, time, checksum, name. A line of another kind is passed over.
Manifest Read_Manifest(const fs::path& file) {
    Manifest manifest;
    if (!fs::exists(file))
        return manifest;
    constexpr std::size_t fields = 4;
    for (const auto& line : Read_Lines(file)) {
        const auto field = Split(line, '\t');
        if (field.size() == fields)
            manifest[field[3]] = {field[0], field[1], field[2]};
    }
    return manifest;
}

std::string Text_Of(const Manifest& manifest) {
    std::string text;
    for (const auto& [name, file] : manifest)
        text += fmt::format("{}\t{}\t{}\t{}\n", file.size, file.written, file.crc32, name);
    return text;
}

std::string Checksum(std::string_view content) {
    return fmt::format(
        "{:08x}", ::crc32_z(0, reinterpret_cast<const Bytef*>(content.data()), content.size()));
}

/// Files and directories below `shipped`, a directory before what it holds.
std::vector<std::string> Shipped_Names(const fs::path& shipped) {
    std::vector<std::string> names;
    for (const auto* part : pilots_own) {
        if (!fs::exists(shipped / part))
            continue;
        names.emplace_back(part);
        if (!fs::is_directory(shipped / part))
            continue;
        for (const auto& entry : fs::recursive_directory_iterator(shipped / part))
            names.push_back(From_Path(entry.path().lexically_relative(shipped)));
    }
    return names;
}

/// Brings one file, if it is newer than `before` says and the pilot's is still the one before.
Shipped_File Take_File(const fs::path& from, const fs::path& to,
                       const std::optional<Shipped_File>& before) {
    Shipped_File now;
    now.size = std::to_string(fs::file_size(from));
    now.written = std::to_string(fs::last_write_time(from).time_since_epoch().count());
    if (before && before->size == now.size && before->written == now.written)
        return *before;
    const std::string content = Read_File(from);
    now.size = std::to_string(content.size());
    now.crc32 = Checksum(content);
    const bool exists = fs::exists(fs::symlink_status(to));
    const bool unchanged = before && fs::is_regular_file(to) &&
                           std::to_string(fs::file_size(to)) == before->size &&
                           Checksum(Read_File(to)) == before->crc32;
    if (before ? unchanged && before->crc32 != now.crc32 : !exists)
        Write_File_Atomically(to, content);
    return now;
}

}  // namespace

void Take_Shipped_Files(Services& services, const fs::path& shipped) {
    fs::create_directories(services.program_directory);
    const fs::path manifest_file = services.program_directory / manifest_name;
    const Manifest before = Read_Manifest(manifest_file);
    Manifest now;
    std::optional<Run_Error> failure;
    for (const auto& name : Shipped_Names(shipped)) {
        const auto known = before.find(name);
        try {
            // Found without regard to case, as everything there is.
            const auto to = Find_Path(services, services.program_directory, name);
            if (fs::is_directory(shipped / To_Path(name)))
                fs::create_directories(to);
            else
                now[name] =
                    Take_File(shipped / To_Path(name), to,
                              known == before.end() ? std::nullopt : std::optional(known->second));
        } catch (...) {
            if (known != before.end())
                now.insert(*known);
            if (!failure)
                failure = Caught_Error();
        }
    }
    if (now != before)
        Write_File_Atomically(manifest_file, Text_Of(now));
    if (failure)
        throw *failure;
}

}  // namespace norvane
