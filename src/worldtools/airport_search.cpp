#include "worldtools/airport_search.h"

#include <array>
#include <system_error>
#include <utility>

#include "acars/world_file.h"
#include "common/line_reader.h"
#include "common/text.h"

namespace norvane {

namespace {

/// Letters without their accents, for the bytes from 0xE0 on; who types "zurich" means "Zürich".
constexpr std::string_view plain_letters =
    "aaaaaa\xE6"
    "ceeeeiiii\xF0nooooo\xF7ouuuuy\xFEy";
constexpr unsigned char first_accented = 0xE0;
static_assert(plain_letters.size() == 256 - first_accented);

char Plain(char letter) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte >= first_accented)
        return plain_letters[byte - first_accented];
    if (byte == 0x9A)
        return 's';
    return byte == 0x9E ? 'z' : letter;
}

/// What texts are compared as: lower case, without accents.
std::string Folded(std::string_view text) {
    std::string folded = Lower(text);
    for (char& letter : folded)
        letter = Plain(letter);
    return folded;
}

/// Kinds of matches, the better ones first.
enum Rank : std::size_t { exact_code, begin_of_code, elsewhere, rank_count };

}  // namespace

Airport_Search::Source::Source(const std::filesystem::path& path) : file(path) {
    std::error_code failure;
    written = std::filesystem::last_write_time(file, failure);
    exists = !failure;
    size = exists ? std::filesystem::file_size(file, failure) : 0;
}

void Airport_Search::Load(const std::filesystem::path& world, const std::filesystem::path& own) {
    std::vector<Source> sources{Source(own), Source(world)};
    if (m_sources == sources)
        return;
    m_sources.clear();
    m_airports.clear();
    m_folded.clear();
    if (sources.front().exists)
        Add(own);
    Add(world);
    m_sources = std::move(sources);
}

void Airport_Search::Add(const std::filesystem::path& file) {
    const std::string content = Read_File(file);
    for (Line_Reader reader(content); reader.Next();) {
        std::string_view fault;
        const std::string_view line = reader.Line();
        const auto airport = Is_World_Comment(line) ? std::nullopt : Read_World_Line(line, fault);
        if (!airport)
            continue;
        m_airports.push_back({std::string(airport->icao), std::string(airport->name),
                              airport->position, airport->elevation_ft});
        m_folded.push_back(Folded(m_airports.back().icao) + field_separator +
                           Folded(m_airports.back().name));
    }
}

bool Airport_Search::Is_Search(std::string_view text) {
    return Trimmed_View(text).size() > 1;
}

Airport_Matches Airport_Search::Find(std::string_view text, std::size_t most) const {
    const std::string wanted = Folded(Trimmed_View(text));
    std::array<std::vector<std::size_t>, rank_count> found;
    Airport_Matches matches;
    for (std::size_t i = 0; i < m_folded.size(); ++i) {
        const std::size_t place = m_folded[i].find(wanted);
        if (place == std::string::npos)
            continue;
        ++matches.count;
        const bool whole = wanted.size() == m_airports[i].icao.size();
        const Rank rank = place > 0 ? elsewhere : whole ? exact_code : begin_of_code;
        if (found[rank].size() < most)
            found[rank].push_back(i);
    }
    for (const auto& places : found) {
        for (const std::size_t i : places) {
            if (matches.airports.size() == most)
                return matches;
            matches.airports.push_back(m_airports[i]);
        }
    }
    return matches;
}

}  // namespace norvane
