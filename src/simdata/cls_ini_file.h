#pragma once
// Reading of the simulator's INI-style files: single values, whole sections, the payload of an
// aircraft's configuration file, flight plans, the addresses of the weather sources. Each user
// creates its own object and points it at one file; nothing is cached.

#include <filesystem>
#include <string>
#include <string_view>

#include "simdata/flight_plan.h"

namespace norvane {

struct Services;

class clsIniFile {
  public:
    explicit clsIniFile(Services& services);

    /// The file that every read uses; surrounding blanks are dropped.
    void Set_INI_FilePath(const std::filesystem::path& file);

    /// Empty when file, section or key is missing. At most 254 characters; with `strip_comment`
    /// only what stands before "//", trimmed.
    [[nodiscard]] std::string Get_String(std::string_view section, std::string_view key,
                                         bool strip_comment);
    /// The section's entries as written, each followed by a NUL; a single NUL when there is none.
    [[nodiscard]] std::string GetSectEntries(std::string_view section);
    /// Reads ATC model, maximum RPM, passengers and cargo; nothing happens when the file is
    /// missing.
    void Get_Configuration_Info();
    /// Reads the seven values of a saved flight plan of either layout; nothing happens when the
    /// file is missing. What was read before an error stays; a plan that is in error has no route.
    /// False when an error was reported.
    bool Get_Flight_Plan();
    /// Reads the five addresses of a weather source.
    void Get_URLs(std::string_view section);

    [[nodiscard]] const std::string& ATC_Model() const { return m_atc_model; }
    [[nodiscard]] const std::string& Max_RPM() const { return m_max_rpm; }
    [[nodiscard]] const std::string& PAX() const { return m_pax; }
    [[nodiscard]] const std::string& Baggage_Cargo() const { return m_baggage_cargo; }
    /// Identifiers and airways with "." between them.
    [[nodiscard]] const std::string& FLIGHT_PLAN() const { return m_plan.route; }
    [[nodiscard]] const std::string& Flight_Origin_ICAO() const { return m_plan.origin_icao; }
    [[nodiscard]] const std::string& Flight_Origin_Name() const { return m_plan.origin_name; }
    [[nodiscard]] const std::string& Flight_Destination_ICAO() const {
        return m_plan.destination_icao;
    }
    [[nodiscard]] const std::string& Flight_Destination_Name() const {
        return m_plan.destination_name;
    }
    /// "FL350" or "12500" from a plan of sections and keys, feet as written from one in XML.
    [[nodiscard]] const std::string& FLIGHT_LEVEL() const { return m_plan.flight_level; }
    /// "IFR" or "VFR", as the plan has it.
    [[nodiscard]] const std::string& Flight_Type() const { return m_plan.type; }
    [[nodiscard]] const std::string& URL() const { return m_url; }
    [[nodiscard]] const std::string& URL_Data() const { return m_url_data; }
    [[nodiscard]] const std::string& URL_METAR() const { return m_url_metar; }
    [[nodiscard]] const std::string& URL_TAF() const { return m_url_taf; }
    [[nodiscard]] const std::string& URL_METAR_TAF() const { return m_url_metar_taf; }

  private:
    struct Layout;

    template <class Reader>
    void Read_Payload(std::string_view procedure, Reader reader);
    [[nodiscard]] bool Is_Missing() const;
    bool Get_XML_Flight_Plan(const std::string& text);
    void Do_ACLoader(const std::string& section);
    void Do_WB(const std::string& section);
    void DO_PSS(const std::string& section);
    void Do_DF(const std::string& section);
    void Do_Fanda(const std::string& section);

    Services& m_services;
    std::filesystem::path m_file;
    std::string m_atc_model;
    std::string m_max_rpm;
    std::string m_pax;
    std::string m_baggage_cargo;
    Flight_Plan m_plan;
    std::string m_url;
    std::string m_url_data;
    std::string m_url_metar;
    std::string m_url_taf;
    std::string m_url_metar_taf;
};

}  // namespace norvane
