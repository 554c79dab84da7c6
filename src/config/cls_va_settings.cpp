#include "config/cls_va_settings.h"

#include <algorithm>
#include <array>

#include "common/code_page.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/airline_list.h"
#include "config/field_definitions.h"

namespace norvane {

namespace {

constexpr std::size_t most_fields = 76;

Run_Error Fault_In(const std::filesystem::path& file, const std::string& fault) {
    return {error_number::invalid_call, From_Path(file) + fault};
}

}  // namespace

/// What went wrong, for the reports that come once everybody has turned to the airline: the box of
/// a report lets other code run.
struct clsVASettings::Fault {
    std::string_view procedure;
    Run_Error error;
    Show show = Show::box;
};

template <class Body>
void clsVASettings::Note_Failure(std::string_view procedure, Faults& faults, Body&& body) {
    try {
        body();
    } catch (...) {
        faults.push_back({procedure, Caught_Error()});
    }
}

clsVASettings::clsVASettings(Services& services) : m_services(services) {}

void clsVASettings::Get_VA_Settings(std::string_view name) {
    Reset();
    Faults faults;
    Note_Failure("clsVASettings.Get_VA_Settings()", faults, [&] {
        m_name = Trim(name);
        m_directory = Airline_Directory(m_name);
        m_path = Find_Path(m_services, m_services.program_directory, m_directory);
        if (!std::filesystem::is_directory(m_path))
            return;
        const auto server_file = File("server.cfg");
        if (!std::filesystem::exists(server_file))
            return;
        const bool encode = !std::filesystem::exists(File("noencode"));
        std::array<std::string, 3> lines;
        const std::string content = Read_File(server_file);
        Line_Reader reader(content);
        for (auto& line : lines) {
            if (reader.Next())
                line = Trim(reader.Line());
        }
        if (lines[0].empty() || (lines[1].empty() && lines[2].empty()))
            return;
        m_web_server = lines[0];
        m_script_pirep = lines[1];
        m_script_acars = lines[2];
        m_url_encode = encode;
        Get_PIREP_Fields(faults);
    });
    Change.Emit();
    for (const Fault& fault : faults)
        Log_Error(m_services, fault.procedure, fault.error, fault.show);
}

void clsVASettings::Reset() {
    m_name.clear();
    m_directory.clear();
    m_web_server.clear();
    m_script_pirep.clear();
    m_script_acars.clear();
    m_url_encode = true;
    m_fields.assign(2, {});
}

std::filesystem::path clsVASettings::File(std::string_view name) const {
    return Find_Path(m_services, m_path, name);
}

void clsVASettings::Get_PIREP_Fields(Faults& faults) {
    constexpr std::string_view procedure = "clsVASettings.Get_PIREP_Fields()";
    Note_Failure(procedure, faults, [&] {
        const auto pirep_file = File("pirep.cfg");
        if (!std::filesystem::exists(pirep_file))
            return;
        m_fields.assign(most_fields, {});
        std::size_t count = 0;
        Add_Fields(pirep_file, count, most_fields + 1, false);
        const std::size_t pirep_count = count;
        const auto airline_file = File("vafields.cfg");
        if (std::filesystem::exists(airline_file))
            Add_Fields(airline_file, count, airline_field_count, true);
        if (count == 0)
            throw Fault_In(pirep_file, ": no field");
        m_fields.resize(count);
        if (pirep_count != fixed_pirep_values) {
            faults.push_back({procedure,
                              Fault_In(pirep_file, ": " + std::to_string(pirep_count) +
                                                       " fields, where a PIREP has " +
                                                       std::to_string(fixed_pirep_values) +
                                                       " values before the airline's own"),
                              Show::silent});
        }
    });
}

void clsVASettings::Add_Fields(const std::filesystem::path& file, std::size_t& count,
                               std::size_t most, bool name_is_last) {
    const std::string content = Read_File(file);
    std::size_t taken = 0;
    for (Line_Reader reader(content); taken < most && reader.Next();) {
        const std::string_view line = reader.Line();
        if (Trimmed_View(line).empty())
            continue;
        const std::string place = ", line " + std::to_string(reader.Line_Number());
        const auto first = line.find('^');
        if (first == std::string_view::npos)
            throw Fault_In(file, place + ": no \"^\" between label and field name");
        if (count == m_fields.size()) {
            throw Run_Error(
                error_number::subscript_out_of_range,
                From_Path(file) + place + ": more than " + std::to_string(most_fields) + " fields");
        }
        const auto mark = name_is_last ? line.rfind('^') : first;
        m_fields[count++] = {std::string(line.substr(0, first)),
                             std::string(line.substr(mark + 1))};
        ++taken;
    }
}

const std::string& clsVASettings::PIREP_Fields(int index) const {
    return Entry(index).name;
}

const std::string& clsVASettings::PIREP_Field_Names(int index) const {
    return Entry(index).label;
}

const clsVASettings::Field& clsVASettings::Entry(int index) const {
    if (index < 0 || index > PIREP_Fields_Ubound()) {
        throw Run_Error(error_number::subscript_out_of_range,
                        "The airline has no PIREP field " + std::to_string(index));
    }
    return m_fields[static_cast<std::size_t>(index)];
}

Airline_By_Name::Airline_By_Name(Services& services, const clsVASettings& loaded,
                                 std::string_view name)
    : m_loaded(loaded) {
    if (loaded.Name() != name)
        m_apart.emplace(services).Get_VA_Settings(name);
}

}  // namespace norvane
