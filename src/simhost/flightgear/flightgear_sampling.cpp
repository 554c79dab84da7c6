#include "simhost/flightgear/flightgear_sampling.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/code_page.h"
#include "common/number.h"
#include "common/text.h"

namespace norvane {

namespace {

struct Word {
    Figure_Kind kind;
    std::string_view word;
    double value;
};

constexpr auto words = std::to_array<Word>({
    {Figure_Kind::flag, "true", 1},
    {Figure_Kind::flag, "false", 0},
    // Some aircraft keep a brake's position as a flag.
    {Figure_Kind::number, "true", 1},
    {Figure_Kind::number, "false", 0},
    {Figure_Kind::cover, "clear", 0},
    {Figure_Kind::cover, "cirrus", 1},
    {Figure_Kind::cover, "few", 2},
    {Figure_Kind::cover, "scattered", 4},
    {Figure_Kind::cover, "broken", 6},
    {Figure_Kind::cover, "overcast", 8},
});

std::optional<double> Value_Of(std::string_view answer, const Figure_Row& row, double factor) {
    const auto word = std::find_if(words.begin(), words.end(), [&](const Word& each) {
        return each.kind == row.kind && each.word == answer;
    });
    std::optional<double> value = word == words.end() ? Parse_Number(answer) : word->value;
    if (!value)
        return std::nullopt;
    if (row.kind == Figure_Kind::flag)
        return *value != 0 ? 1 : 0;
    *value *= factor;
    return *value >= row.low && *value <= row.high ? value : std::nullopt;
}

/// One line that the simulator's text fields can hold.
std::string Clean_Text(std::string_view answer) {
    std::string line = From_Utf8(answer);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return Trim(line);
}

}  // namespace

Flightgear_Sampling::Flightgear_Sampling(const Flightgear_Table& table, std::string_view aircraft) {
    constexpr auto figure_count = static_cast<std::size_t>(Figure::call_sign) + 1;
    m_places.resize(figure_count);
    for (std::size_t i = 0; i < figure_count; ++i) {
        const auto figure = static_cast<Figure>(i);
        const auto sources = table.Sources_Of(figure, aircraft);
        for (int n = 0; n < Row_Of(figure).count; ++n) {
            auto& places = m_places[i].emplace_back();
            for (const Figure_Source& source : sources)
                places.push_back(Place_Of(source, n));
        }
    }
    m_answers.resize(m_paths.size());
}

Flightgear_Sampling::Place Flightgear_Sampling::Place_Of(const Figure_Source& source, int n) {
    if (source.path.empty())
        return {std::nullopt, source.factor};
    const std::string path = Replace_All(source.path, "[n]", "[" + std::to_string(n) + "]");
    const auto found = std::find(m_paths.begin(), m_paths.end(), path);
    const auto index = static_cast<std::size_t>(found - m_paths.begin());
    if (found == m_paths.end())
        m_paths.push_back(path);
    return {index, source.factor};
}

std::vector<std::size_t> Flightgear_Sampling::Answered(std::span<const Figure> figures) const {
    std::vector<std::size_t> answered;
    for (const Figure figure : figures) {
        for (const std::vector<Place>& places : m_places.at(static_cast<std::size_t>(figure))) {
            for (const Place& place : places) {
                if (place.path && !m_answers.at(*place.path).empty())
                    answered.push_back(*place.path);
            }
        }
    }
    std::sort(answered.begin(), answered.end());
    answered.erase(std::unique(answered.begin(), answered.end()), answered.end());
    return answered;
}

void Flightgear_Sampling::Take_At(std::span<const std::size_t> places,
                                  std::vector<std::string> answers) {
    for (std::size_t i = 0; i < places.size(); ++i)
        m_answers.at(places[i]) = std::move(answers.at(i));
}

std::optional<double> Flightgear_Sampling::Find(Figure figure, int n) const {
    const Figure_Row& row = Row_Of(figure);
    const auto& places = m_places.at(static_cast<std::size_t>(figure));
    for (const Place& place : places.at(static_cast<std::size_t>(n))) {
        if (!place.path)
            return place.factor;
        if (const auto value = Value_Of(m_answers.at(*place.path), row, place.factor))
            return value;
    }
    return std::nullopt;
}

double Flightgear_Sampling::Get(Figure figure, double otherwise, int n) const {
    return Find(figure, n).value_or(otherwise);
}

bool Flightgear_Sampling::Is(Figure flag, bool otherwise, int n) const {
    return Get(flag, otherwise ? 1 : 0, n) != 0;
}

std::string Flightgear_Sampling::Text(Figure figure) const {
    for (const Place& place : m_places.at(static_cast<std::size_t>(figure)).front()) {
        if (std::string text = Clean_Text(m_answers.at(place.path.value())); !text.empty())
            return text;
    }
    return {};
}

}  // namespace norvane
