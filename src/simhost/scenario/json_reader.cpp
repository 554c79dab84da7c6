#include "simhost/scenario/json_reader.h"

#include <fmt/format.h>

#include <cmath>
#include <utility>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/run_error.h"

namespace norvane {

namespace {

/// Bytes. Nobody writes this much by hand, and a value takes many times its text's memory.
constexpr std::size_t largest_file = 1'000'000;

}  // namespace

Json_Reader::Json_Reader(const nlohmann::json& value, std::string place)
    : m_value(&value), m_place(std::move(place)) {
    if (!value.is_object())
        throw Run_Error(
            error_number::other,
            fmt::format("{}: an object is expected", m_place.empty() ? "the whole file" : m_place));
}

std::string Json_Reader::Place_Of(const std::string& key) const {
    return m_place.empty() ? key : m_place + "." + key;
}

void Json_Reader::Fault(const std::string& key, const std::string& reason) const {
    throw Run_Error(error_number::other, fmt::format("{}: {}", Place_Of(key), reason));
}

const nlohmann::json* Json_Reader::Find(const std::string& key) {
    m_asked.insert(key);
    const auto found = m_value->find(key);
    return found == m_value->end() ? nullptr : &*found;
}

bool Json_Reader::Has(const std::string& key) const {
    return m_value->contains(key);
}

double Json_Reader::Number(const std::string& key, Range range, double otherwise) {
    const nlohmann::json* value = Find(key);
    if (value == nullptr)
        return otherwise;
    if (!value->is_number())
        Fault(key, "a number is expected");
    const double number = value->get<double>();
    if (!(number >= range.least && number <= range.most))
        Fault(key, fmt::format("{:g} lies outside {:g} to {:g}", number, range.least, range.most));
    return number;
}

double Json_Reader::Number(const std::string& key, Range range) {
    if (!Has(key))
        Fault(key, "is missing");
    return Number(key, range, 0);
}

int Json_Reader::Integer(const std::string& key, Range range) {
    const double number = Number(key, range);
    if (number != std::floor(number))
        Fault(key, "a whole number is expected");
    return static_cast<int>(number);
}

std::string Json_Reader::Text(const std::string& key, std::size_t most) {
    const nlohmann::json* value = Find(key);
    if (value == nullptr)
        Fault(key, "is missing");
    if (!value->is_string())
        Fault(key, "a text is expected");
    std::string text = From_Utf8(value->get<std::string>());
    if (text.empty() || text.size() > most)
        Fault(key, fmt::format("1 to {} characters are expected", most));
    return text;
}

Json_Reader Json_Reader::Object(const std::string& key) {
    const nlohmann::json* value = Find(key);
    if (value == nullptr)
        Fault(key, "is missing");
    return {*value, Place_Of(key)};
}

std::vector<Json_Reader> Json_Reader::List(const std::string& key) {
    const nlohmann::json* value = Find(key);
    std::vector<Json_Reader> items;
    if (value == nullptr)
        return items;
    if (!value->is_array())
        Fault(key, "a list is expected");
    for (const nlohmann::json& item : *value)
        items.emplace_back(item, fmt::format("{}[{}]", Place_Of(key), items.size()));
    return items;
}

std::vector<double> Json_Reader::Numbers(const std::string& key, const nlohmann::json& list,
                                         std::size_t width) const {
    std::vector<double> numbers;
    if (list.is_array())
        for (const nlohmann::json& item : list)
            if (item.is_number())
                numbers.push_back(item.get<double>());
    if (!list.is_array() || list.size() != width || numbers.size() != width)
        Fault(key, fmt::format("{} numbers are expected", width));
    return numbers;
}

std::vector<std::vector<double>> Json_Reader::Rows(const std::string& key, std::size_t width) {
    const nlohmann::json* value = Find(key);
    std::vector<std::vector<double>> rows;
    if (value == nullptr)
        return rows;
    if (!value->is_array())
        Fault(key, "a list is expected");
    for (const nlohmann::json& item : *value)
        rows.push_back(Numbers(fmt::format("{}[{}]", key, rows.size()), item, width));
    return rows;
}

std::vector<double> Json_Reader::Row(const std::string& key, std::size_t width) {
    const nlohmann::json* value = Find(key);
    if (value == nullptr)
        Fault(key, "is missing");
    return Numbers(key, *value, width);
}

void Json_Reader::Finish() const {
    for (const auto& item : m_value->items())
        if (!m_asked.contains(item.key()))
            Fault(From_Utf8(item.key()), "is not known");
}

void Read_Json_File(const std::filesystem::path& file,
                    const std::function<void(Json_Reader&)>& read) {
    // What the file system reports names the file already.
    const std::string content = Read_File(file);
    if (content.size() > largest_file)
        throw Run_Error(error_number::other,
                        fmt::format("{}: too large, at most {} bytes are expected", From_Path(file),
                                    largest_file));
    try {
        const nlohmann::json value = nlohmann::json::parse(content);
        Json_Reader reader(value, "");
        read(reader);
        reader.Finish();
    } catch (const nlohmann::json::parse_error& error) {
        throw Run_Error(error_number::other,
                        fmt::format("{}: not JSON, at byte {}", From_Path(file), error.byte));
    } catch (const nlohmann::json::exception&) {
        throw Run_Error(error_number::other,
                        fmt::format("{}: a number is too large", From_Path(file)));
    } catch (const Run_Error& error) {
        throw Run_Error(error.Number(),
                        fmt::format("{}: {}", From_Path(file), error.Description()));
    }
}

}  // namespace norvane
