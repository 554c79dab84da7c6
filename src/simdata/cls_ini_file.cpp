#include "simdata/cls_ini_file.h"

#include <array>
#include <system_error>

#include "common/code_page.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/profile_reader.h"
#include "simdata/payload.h"

namespace norvane {

namespace {

constexpr std::string_view payload_section = "WEIGHT_AND_BALANCE";

}  // namespace

struct clsIniFile::Layout {
    std::string_view marker;
    void (clsIniFile::*read)(const std::string& section);
};

clsIniFile::clsIniFile(Services& services) : m_services(services) {}

void clsIniFile::Set_INI_FilePath(const std::filesystem::path& file) {
    m_file = Trim(file.string());
}

std::string clsIniFile::Get_String(std::string_view section, std::string_view key,
                                   bool strip_comment) {
    std::string value;
    Guarded(m_services, "clsIniFile.Get_String()", Show::silent, [&] {
        value = Profile(m_file).Value(section, key);
        if (strip_comment)
            value = Without_Comment(std::move(value));
    });
    return value;
}

std::string clsIniFile::GetSectEntries(std::string_view section) {
    std::string entries;
    Guarded(m_services, "clsIniFile.GetSectEntries()", Show::silent,
            [&] { entries = Profile(m_file).Section(section); });
    return entries;
}

void clsIniFile::Get_URLs(std::string_view section) {
    Guarded(m_services, "clsIniFile.Get_URLs()", Show::box, [&] {
        for (auto* address : {&m_url, &m_url_data, &m_url_metar, &m_url_taf, &m_url_metar_taf})
            address->clear();
        if (section.empty())
            return;
        m_url = Get_String(section, "URL", false);
        m_url_data = Get_String(section, "DATA", false);
        m_url_metar = Get_String(section, "METAR", false);
        m_url_taf = Get_String(section, "TAF", false);
        m_url_metar_taf = Get_String(section, "METAR_TAF", false);
    });
}

bool clsIniFile::Is_Missing() const {
    std::error_code failure;
    return !std::filesystem::exists(m_file, failure) && !failure;
}

bool clsIniFile::Get_Flight_Plan() {
    if (Is_Missing())
        return true;
    bool read = true;
    return Guarded(m_services, "clsIniFile.Get_Flight_Plan()", Show::box,
                   [&] {
                       const std::string text = Flight_Plan_Text(Read_File(m_file));
                       if (Is_Ini_Flight_Plan(text))
                           Read_Ini_Flight_Plan(text, From_Path(m_file), m_plan);
                       else
                           read = Get_XML_Flight_Plan(text);
                   }) &&
           read;
}

bool clsIniFile::Get_XML_Flight_Plan(const std::string& text) {
    // The name that error logs of the field have always carried.
    return Guarded(m_services, "clswIniFile.Get_XML_Flight_Plan()", Show::box,
                   [&] { Read_Xml_Flight_Plan(text, From_Path(m_file), m_plan); });
}

void clsIniFile::Get_Configuration_Info() {
    static constexpr std::array<Layout, 5> layouts{{
        {"ACLOADER", &clsIniFile::Do_ACLoader},
        {"LYONSMARK", &clsIniFile::Do_WB},
        {"WEIGHT PSGR SECT OA", &clsIniFile::DO_PSS},
        {"PASSENGER LOCATION AND WEIGHT", &clsIniFile::Do_DF},
        {"weight /long. tal. vert.", &clsIniFile::Do_Fanda},
    }};
    if (Is_Missing())
        return;
    m_pax.clear();
    m_baggage_cargo.clear();
    m_atc_model = Get_String("GENERAL", "ATC_MODEL", true);
    m_max_rpm = Get_String("PISTON_ENGINE", "MAX_RATED_RPM", true);
    // Aircraft makers write their marker as a comment, behind either sign.
    std::string marked;
    Guarded(m_services, "clsIniFile.GetSectEntries()", Show::silent,
            [&] { marked = Profile(m_file).Section(payload_section, Comment_Lines::keep); });
    for (const auto& layout : layouts) {
        if (Contains_No_Case(marked, layout.marker)) {
            (this->*layout.read)(GetSectEntries(payload_section));
            return;
        }
    }
}

template <class Reader>
void clsIniFile::Read_Payload(std::string_view procedure, Reader reader) {
    Payload payload;
    Guarded(m_services, procedure, Show::silent, [&] { reader(payload); });
    m_pax = payload.pax;
    m_baggage_cargo = payload.baggage_cargo;
}

void clsIniFile::Do_ACLoader(const std::string& section) {
    Read_Payload("clsIniFile.Do_ACLoader()",
                 [&](Payload& payload) { Read_ACLoader_Payload(section, payload); });
}

void clsIniFile::Do_WB(const std::string& /*section*/) {
    Read_Payload("clsIniFile.Do_WB()", [&](Payload& payload) {
        const auto figure = [&](std::string_view key) {
            const std::string text = Get_String(payload_section, key, true);
            return Station_Number(text) ? text : std::string();
        };
        payload.pax = figure("PAX_WEIGHT");
        payload.baggage_cargo = figure("CARGO_WEIGHT");
    });
}

void clsIniFile::DO_PSS(const std::string& section) {
    Read_Payload("clsIniFile.DO_PSS()",
                 [&](Payload& payload) { Read_PSS_Payload(section, m_atc_model, payload); });
}

void clsIniFile::Do_DF(const std::string& section) {
    Read_Payload("clsIniFile.Do_DF()",
                 [&](Payload& payload) { Read_DF_Payload(section, payload); });
}

void clsIniFile::Do_Fanda(const std::string& /*section*/) {
    // Seats; the stations before them are the crew's.
    constexpr int first_station = 3;
    constexpr int last_station = 52;
    Read_Payload("clsIniFile.Do_Fanda()", [&](Payload& payload) {
        int passengers = 0;
        for (int number = first_station; number <= last_station; ++number) {
            const std::string station =
                Get_String(payload_section, "STATION_LOAD." + std::to_string(number), true);
            const auto weight_lbs = Station_Number(station.substr(0, station.find(',') + 1));
            if (weight_lbs && *weight_lbs > 0)
                ++passengers;
        }
        if (passengers > 0)
            payload.pax = std::to_string(passengers);
    });
}

}  // namespace norvane
