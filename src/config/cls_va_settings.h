#pragma once
// The active virtual airline: where its server is, which scripts take reports, which form fields a
// PIREP fills. One object for the whole program, read from the airline's directory.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/signal.h"

namespace norvane {

struct Services;

/// Values of a PIREP that every airline gets; the airline's own fields follow them.
inline constexpr std::size_t fixed_pirep_values = 41;

class clsVASettings {
  public:
    /// All empty, two empty fields, URL encoding on.
    explicit clsVASettings(Services& services);

    /// Loads the airline of that name ("DEFAULT" for the default one), then raises `Change`, then
    /// reports what failed.
    void Get_VA_Settings(std::string_view name);

    /// The airline directory's name under the program directory, "VA" or "VA_" + name.
    [[nodiscard]] const std::string& Directory() const { return m_directory; }
    /// The name last given to `Get_VA_Settings`, trimmed.
    [[nodiscard]] const std::string& Name() const { return m_name; }
    [[nodiscard]] const std::string& WebServer() const { return m_web_server; }
    [[nodiscard]] const std::string& Script_PIREP() const { return m_script_pirep; }
    [[nodiscard]] const std::string& Script_ACARS() const { return m_script_acars; }
    /// Form field name of the i-th PIREP value; an index beyond the bound raises 9.
    [[nodiscard]] const std::string& PIREP_Fields(int index) const;
    /// Label of the i-th PIREP value; as above.
    [[nodiscard]] const std::string& PIREP_Field_Names(int index) const;
    [[nodiscard]] int PIREP_Fields_Ubound() const { return static_cast<int>(m_fields.size()) - 1; }
    [[nodiscard]] int PIREP_Field_Names_Ubound() const { return PIREP_Fields_Ubound(); }
    [[nodiscard]] bool URL_Encode() const { return m_url_encode; }

    Signal<> Change;

  private:
    struct Field {
        std::string label;
        std::string name;
    };

    struct Fault;
    using Faults = std::vector<Fault>;

    void Reset();
    template <class Body>
    static void Note_Failure(std::string_view procedure, Faults& faults, Body&& body);
    void Get_PIREP_Fields(Faults& faults);
    /// Adds the fields of at most `most` lines from entry `count` on; raises at a faulty line.
    void Add_Fields(const std::filesystem::path& file, std::size_t& count, std::size_t most,
                    bool name_is_last);
    /// A file of the airline's directory, found without regard to letter case.
    [[nodiscard]] std::filesystem::path File(std::string_view name) const;
    [[nodiscard]] const Field& Entry(int index) const;

    Services& m_services;
    std::string m_name;
    std::string m_directory;
    /// Where that directory is; its name may differ in letter case.
    std::filesystem::path m_path;
    std::string m_web_server;
    std::string m_script_pirep;
    std::string m_script_acars;
    std::vector<Field> m_fields{2};
    bool m_url_encode = true;
};

/// The airline of a name for the length of a procedure: the one that is loaded, or one read apart,
/// so that what the pilot has loaded stays as it is.
class Airline_By_Name {
  public:
    Airline_By_Name(Services& services, const clsVASettings& loaded, std::string_view name);
    [[nodiscard]] const clsVASettings& Get() const { return m_apart ? *m_apart : m_loaded; }

  private:
    const clsVASettings& m_loaded;
    std::optional<clsVASettings> m_apart;
};

}  // namespace norvane
