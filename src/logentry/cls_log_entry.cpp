#include "logentry/cls_log_entry.h"

#include <fmt/format.h>

#include <algorithm>

#include "common/boxes.h"
#include "common/code_page.h"
#include "common/date_time.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_va_settings.h"
#include "net/airline_forms.h"
#include "net/cls_win_inet.h"

namespace norvane {

namespace {

// Slot i is stored under i followed by one of these.
constexpr int optional_key_ending = 43;
constexpr int airline_key_ending = 44;

std::string Written(Write_Rule rule, std::string_view text) {
    if (rule == Write_Rule::trimmed)
        return Trim(text);
    if (rule == Write_Rule::one_line)
        return Trim(Clean_Field(text, Field_Lines::one));
    std::string kept(text);
    std::erase_if(kept, [](char c) { return c == '[' || c == ']'; });
    return Trim(kept);
}

/// The values of a PIREP line as they are posted: servers read only one form of date.
std::string With_Posted_Date(std::string_view line, const Regional& regional) {
    std::vector<std::string> values = Split(line, field_separator);
    const auto place = static_cast<std::size_t>(Row_Of(Log_Field::FLIGHT_DATE).pirep_place - 1);
    if (place < values.size()) {
        if (const auto moment = Parse_Date_Time(values[place], regional.short_date)) {
            values[place] =
                fmt::format("{} {:02}:{:02}:{:02}", Format_Iso_Date(moment->date),
                            moment->time.hour, moment->time.minute, moment->time.second);
        }
    }
    return Join(values, std::string_view(&field_separator, 1));
}

/// The PIREP file by the name that the entry states. A text cannot hold every name that the program
/// directory may have, so that a file in it is found from the directory itself.
std::filesystem::path PIREP_File(const Services& services, std::string_view stated) {
    const std::string directory = From_Path(services.program_directory / "");
    if (!stated.starts_with(directory))
        return To_Path(stated);
    return services.program_directory / To_Path(stated.substr(directory.size()));
}

Run_Error No_Values(const std::string& file) {
    return {error_number::other,
            "The PIREP was not sent: the first line of " + file +
                " holds no values separated by "
                "\"|\"",
            "There is nothing to send: " + file +
                " holds no PIREP.  The flight log is not affected.  Please select a PIREP that was "
                "saved at the end of a flight."};
}

Run_Error Not_Sent(const std::string& file, const clsVASettings& airline,
                   const Post_Result& result) {
    const std::string& host = airline.WebServer();
    return {
        error_number::other,
        fmt::format("The PIREP {} was not sent to the airline {} at {}: {}", file, airline.Name(),
                    host, result.failure),
        fmt::format("The server {} gave no proper answer to your PIREP for the airline {}.  "
                    "Your flight log is not affected, and the PIREP is kept in\r\n\r\n{}\r\n"
                    "\r\n{}",
                    host, airline.Name(), file,
                    result.for_pilot.empty()
                        ? "Please send it with \"File\" / \"Send PIREP ...\" when the server "
                          "can be reached again."
                        : result.for_pilot + "  \"File\" / \"Send PIREP ...\" sends it again.")};
}

std::string Slot_Key(std::size_t slot, int ending) {
    return fmt::format("{}{}", slot, ending);
}

template <class Slots>
auto& Slot_Of(Slots& values, std::size_t slot, std::string_view name) {
    if (slot >= values.size()) {
        throw Run_Error(error_number::subscript_out_of_range,
                        fmt::format("{}({}): the last slot is {}", name, slot, values.size() - 1));
    }
    return values.at(slot);
}

/// Calls `visit(key, text)` for every stored key of an entry's values.
template <class Fields, class Optional, class Airline, class Visit>
void For_Each_Stored(Fields& fields, Optional& optional, Airline& airline, Visit&& visit) {
    for (const Log_Field_Row& row : All_Log_Fields()) {
        if (row.store_key != 0)
            visit(fmt::format("{}", row.store_key), fields.at(static_cast<std::size_t>(row.id)));
    }
    for (std::size_t slot = 0; slot < optional.size(); ++slot)
        visit(Slot_Key(slot, optional_key_ending), optional.at(slot));
    for (std::size_t slot = 0; slot < airline.size(); ++slot)
        visit(Slot_Key(slot, airline_key_ending), airline.at(slot));
}

}  // namespace

clsLogEntry::clsLogEntry(Services& services) : m_services(services) {
    Restore();
}

const std::string& clsLogEntry::Get(Log_Field field) const {
    return m_fields.at(static_cast<std::size_t>(field));
}

void clsLogEntry::Set(Log_Field field, std::string_view text) {
    m_fields.at(static_cast<std::size_t>(field)) = Written(Row_Of(field).rule, text);
}

const std::string& clsLogEntry::OPTIONAL_FIELDS(std::size_t slot) const {
    return Slot_Of(m_optional, slot, "OPTIONAL_FIELDS");
}

void clsLogEntry::Set_OPTIONAL_FIELDS(std::size_t slot, std::string_view text) {
    Slot_Of(m_optional, slot, "OPTIONAL_FIELDS") = text;
}

const std::string& clsLogEntry::VA_FIELDS(std::size_t slot) const {
    return Slot_Of(m_airline, slot, "VA_FIELDS");
}

void clsLogEntry::Set_VA_FIELDS(std::size_t slot, std::string_view text) {
    Slot_Of(m_airline, slot, "VA_FIELDS") = text;
}

void clsLogEntry::New_Log_Entry_Save() {
    NewLogEntrySave.Emit();
}

void clsLogEntry::New_Log_Entry_Save_Result(bool saved) {
    (saved ? NewLogEntrySaveOK : NewLogEntrySaveFail).Emit();
}

std::string clsLogEntry::PIREP_Line() const {
    std::array<std::string_view, fixed_pirep_values> placed;
    for (const Log_Field_Row& row : All_Log_Fields()) {
        if (row.pirep_place != 0)
            placed.at(static_cast<std::size_t>(row.pirep_place - 1)) = Get(row.id);
    }
    // A separator or line break inside a value would shift every value behind it.
    std::string line;
    for (const std::string_view text : placed)
        line += Clean_Field(text, Field_Lines::one) + field_separator;
    for (const std::string& text : m_airline)
        line += Clean_Field(text, Field_Lines::one) + field_separator;
    line.pop_back();
    return line;
}

bool clsLogEntry::Export_ACARS_Report() {
    return Write_PIREP(PIREP_File(m_services, Get(Log_Field::PIREP_FILE_NAME)), PIREP_Line());
}

bool clsLogEntry::Make_Up_PIREP(const std::string& file, std::string_view line) {
    std::error_code failure;
    const std::filesystem::path path = PIREP_File(m_services, file);
    return std::filesystem::exists(path, failure) || Write_PIREP(path, line);
}

bool clsLogEntry::Write_PIREP(const std::filesystem::path& file, std::string_view line) {
    return Guarded(m_services, "clsLogEntry.Export_ACARS_Report()", Show::box, [&] {
        std::filesystem::create_directories(m_services.program_directory / "reports");
        Write_File_Atomically(file, std::string(line) + std::string(cr_lf));
    });
}

std::string clsLogEntry::Values_To_Post() const {
    const std::string& stated = Get(Log_Field::PIREP_FILE_NAME);
    const std::string file = Read_File(PIREP_File(m_services, stated));
    Line_Reader lines(file);
    if (!lines.Next() || !Contains(lines.Line(), std::string_view(&field_separator, 1)))
        throw No_Values(stated);
    return With_Posted_Date(lines.Line(), m_services.regional);
}

std::string clsLogEntry::Form_To_Post(const clsVASettings& airline) const {
    return PIREP_Form(airline, Values_To_Post());
}

std::optional<Run_Error> clsLogEntry::Send_PIREP(const clsAppSettings& settings,
                                                 const clsVASettings& airline,
                                                 const Http_Options& options) {
    try {
        const std::string& stated = Get(Log_Field::PIREP_FILE_NAME);
        clsWinInet client(m_services, settings, airline, options);
        const Post_Result result =
            client.Send_PIREP(airline.WebServer(), airline.Script_PIREP(), Values_To_Post());
        if (!result.success)
            throw Not_Sent(stated, airline, result);
        return std::nullopt;
    } catch (...) {
        Run_Error error = Caught_Error();
        Log_Error(m_services, "clsLogEntry.Send_PIREP()", error, Show::silent);
        return error;
    }
}

bool clsLogEntry::Persist() {
    return Guarded(m_services, "clsLogEntry.Persist()", Show::box, [&] {
        Settings_Batch batch(m_services.settings);
        For_Each_Stored(m_fields, m_optional, m_airline,
                        [&](const std::string& key, const std::string& text) {
                            m_services.settings.Set(flight_section, key, text);
                        });
        batch.Commit();
    });
}

void clsLogEntry::Restore() {
    Guarded(m_services, "clsLogEntry.Restore()", Show::box, [&] {
        const int date_key = Row_Of(Log_Field::FLIGHT_DATE).store_key;
        if (m_services.settings.Get(flight_section, fmt::format("{}", date_key)).empty())
            return;
        For_Each_Stored(m_fields, m_optional, m_airline,
                        [&](const std::string& key, std::string& text) {
                            text = m_services.settings.Get(flight_section, key);
                        });
    });
}

void Tell_PIREP_Failure(Desktop& desktop, const Run_Error& error) {
    const std::string words = error.For_Pilot().empty()
                                  ? "The PIREP could not be read, and was not sent.  Your flight "
                                    "log is not affected."
                                  : error.For_Pilot();
    Tell(desktop, words, Icon::exclamation, std::string(product_name) + " Error",
         error.Description());
}

void Delete_Stored_Flight(Services& services) {
    services.settings.Delete_Section(flight_section);
}

}  // namespace norvane
