#pragma once
// Reading a JSON object strictly: each key is asked for by name, with the range its value may have;
// a key nobody asked for is a fault. Every fault is raised with its place in the file. Used by the
// reading of scenarios and aircraft only.

#include <nlohmann/json.hpp>

#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace norvane {

struct Range {
    double least = 0;
    double most = 0;
};

class Json_Reader {
  public:
    /// `place` names the object in faults ("departure.weather"); empty for the whole file.
    Json_Reader(const nlohmann::json& value, std::string place);

    /// A number within `range`; a key that is missing gives `otherwise`.
    [[nodiscard]] double Number(const std::string& key, Range range, double otherwise);
    /// The same for a key that must be there.
    [[nodiscard]] double Number(const std::string& key, Range range);
    [[nodiscard]] int Integer(const std::string& key, Range range);
    /// A text of at most `most` characters in the code page, not empty.
    [[nodiscard]] std::string Text(const std::string& key, std::size_t most);
    [[nodiscard]] bool Has(const std::string& key) const;
    [[nodiscard]] Json_Reader Object(const std::string& key);
    /// The items of a list as readers of their own; none when the key is missing.
    [[nodiscard]] std::vector<Json_Reader> List(const std::string& key);
    /// A list of lists of `width` numbers; none when the key is missing.
    [[nodiscard]] std::vector<std::vector<double>> Rows(const std::string& key, std::size_t width);
    /// One such list of numbers; the key must be there.
    [[nodiscard]] std::vector<double> Row(const std::string& key, std::size_t width);

    /// Raises when the object holds a key that was not asked for.
    void Finish() const;
    [[noreturn]] void Fault(const std::string& key, const std::string& reason) const;

  private:
    [[nodiscard]] const nlohmann::json* Find(const std::string& key);
    [[nodiscard]] std::vector<double> Numbers(const std::string& key, const nlohmann::json& list,
                                              std::size_t width) const;
    [[nodiscard]] std::string Place_Of(const std::string& key) const;

    const nlohmann::json* m_value;
    std::string m_place;
    std::set<std::string> m_asked;
};

/// Reads a file that holds one JSON object. Faults of the file, of its form and those that `read`
/// raises are raised as one Run_Error: the file's name, what is wrong.
void Read_Json_File(const std::filesystem::path& file,
                    const std::function<void(Json_Reader&)>& read);

}  // namespace norvane
