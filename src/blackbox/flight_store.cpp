#include "blackbox/flight_store.h"

#include <fmt/format.h>
#include <sqlite3.h>

#include <system_error>

#include "blackbox/flight_fields.h"
#include "blackbox/flight_track.h"
#include "common/code_page.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::int64_t store_version = 2;
/// From this version on there is the table of planned figures.
constexpr std::int64_t planned_version = 2;
constexpr char line_mark = '\n';

/// The columns of a table, in the order of the figures.
struct Column_Walk {
    void operator()(const char* name, const std::string&) { Add(name, "TEXT"); }
    void operator()(const char* name, double) { Add(name, "REAL"); }
    void operator()(const char* name, const std::optional<double>&) { Add(name, "REAL"); }
    void operator()(const char* name, int) { Add(name, "INTEGER"); }
    void operator()(const char* name, bool) { Add(name, "INTEGER"); }
    void operator()(const char* name, const Block_Evidence&) { Add(name, "TEXT"); }
    void operator()(const char* name, const std::vector<std::string>&) { Add(name, "TEXT"); }
    template <class Value>
    requires std::is_enum_v<Value>
    void operator()(const char* name, Value) { Add(name, "TEXT"); }

    void Add(const char* name, const char* type) {
        declared += fmt::format(", {} {}", name, type);
        names += fmt::format(", {}", name);
        marks += ", ?";
    }
    std::string declared;
    std::string names;
    std::string marks;
};

template <class Part>
Column_Walk Columns_Of() {
    Column_Walk columns;
    Part part;
    Each_Field(part, columns);
    return columns;
}

struct Row_Writer {
    void operator()(const char*, const std::string& text) { row.Bind(text); }
    void operator()(const char*, double value) { row.Bind(value); }
    void operator()(const char*, const std::optional<double>& value) {
        if (value)
            row.Bind(*value);
        else
            row.Bind_Null();
    }
    void operator()(const char*, int value) { row.Bind(std::int64_t{value}); }
    void operator()(const char*, bool value) { row.Bind(std::int64_t{value}); }
    void operator()(const char*, const Block_Evidence& evidence) {
        row.Bind(Evidence_Text(evidence));
    }
    void operator()(const char*, const std::vector<std::string>& lines) {
        row.Bind(Join(lines, std::string(1, line_mark)));
    }
    template <class Value>
    requires std::is_enum_v<Value>
    void operator()(const char*, Value value) { row.Bind(Name_Of(value)); }

    Sqlite_Statement& row;
};

struct Row_Reader {
    void operator()(const char*, std::string& text) { text = row.Text(column++); }
    void operator()(const char*, double& value) { value = row.Real(column++); }
    void operator()(const char*, std::optional<double>& value) {
        if (!row.Is_Null(column))
            value = row.Real(column);
        ++column;
    }
    void operator()(const char*, int& value) {
        value = static_cast<int>(row.Whole_Number(column++));
    }
    void operator()(const char*, bool& value) { value = row.Whole_Number(column++) != 0; }
    void operator()(const char*, Block_Evidence& evidence) {
        evidence = Parse_Evidence(row.Text(column++)).value_or(Block_Evidence());
    }
    void operator()(const char*, std::vector<std::string>& lines) {
        const std::string text = row.Text(column++);
        lines = text.empty() ? std::vector<std::string>() : Split(text, line_mark);
    }
    template <class Value>
    requires std::is_enum_v<Value>
    void operator()(const char*, Value& value) { Take_Name(row.Text(column++), value); }

    const Sqlite_Statement& row;
    int column = 0;
};

// A list of a flight is a table whose rows are known by the flight and their place, from 0. The
// touches are all in one, counted through; `landing` says to which landing one belongs.
template <class Part>
void Make_List(Sqlite_Database& database, const char* table, const char* more = "") {
    database.Execute(fmt::format("CREATE TABLE IF NOT EXISTS {}(flight TEXT, place INTEGER{}{}, "
                                 "PRIMARY KEY (flight, place))",
                                 table, more, Columns_Of<Part>().declared)
                         .c_str());
}

template <class Part>
void Write_List(const Sqlite_Database& database, const char* table, const std::string& id,
                const std::vector<Part>& parts) {
    const Column_Walk columns = Columns_Of<Part>();
    auto row = database.Prepare(fmt::format("INSERT INTO {}(flight, place{}) VALUES(?, ?{})", table,
                                            columns.names, columns.marks));
    for (std::size_t i = 0; i < parts.size(); ++i) {
        row.Reset();
        row.Bind(id).Bind(static_cast<std::int64_t>(i));
        Each_Field(parts[i], Row_Writer{row});
        row.Step();
    }
}

template <class Part>
void Read_List(const Sqlite_Database& database, const char* table, const std::string& id,
               std::vector<Part>& parts) {
    auto row = database.Prepare(fmt::format(
        "SELECT place{} FROM {} WHERE flight = ? ORDER BY place", Columns_Of<Part>().names, table));
    row.Bind(id);
    while (row.Step())
        Each_Field(parts.emplace_back(), Row_Reader{row, 1});
}

void Write_Touches(const Sqlite_Database& database, const Flight_Summary& flight) {
    const Column_Walk columns = Columns_Of<Touch>();
    auto row = database.Prepare(
        fmt::format("INSERT INTO touches(flight, place, landing{}) VALUES(?, ?, ?{})",
                    columns.names, columns.marks));
    std::int64_t place = 0;
    for (std::size_t i = 0; i < flight.landings.size(); ++i) {
        for (const Touch& touch : flight.landings[i].touches) {
            row.Reset();
            row.Bind(flight.id).Bind(place++).Bind(static_cast<std::int64_t>(i));
            Each_Field(touch, Row_Writer{row});
            row.Step();
        }
    }
}

constexpr auto list_tables = {"settings", "events",  "phases", "incidents",
                              "landings", "touches", "planned"};

bool Reaches(const std::string& began_utc, const std::optional<Date>& from,
             const std::optional<Date>& to) {
    if (!from && !to)
        return true;
    // ISO dates are in the order of their texts.
    const std::string day = began_utc.substr(0, began_utc.find('T'));
    return !day.empty() && (!from || day >= Format_Iso_Date(*from)) &&
           (!to || day <= Format_Iso_Date(*to));
}

}  // namespace

bool Flight_Filter::Takes(const Flight_Summary& flight) const {
    return Reaches(flight.began_utc, from, to) &&
           (airport.empty() || Equal_No_Case(airport, flight.origin) ||
            Equal_No_Case(airport, flight.destination));
}

Flight_Store::Flight_Store(const std::filesystem::path& directory, Store_Use use,
                           std::chrono::milliseconds patience)
    : m_file(std::filesystem::absolute(directory) / "flights.sqlite"), m_patience(patience) {
    try {
        Open(use);
    } catch (const Broken_Content& fault) {
        m_database.reset();
        m_trouble = fault.Description();
        if (use == Store_Use::write) {
            m_trouble += "\r\nThe file is kept as " +
                         From_Path(Move_Database_Aside(m_file, ".damaged")) +
                         ", a new one was begun; \"norvane-cli flight rebuild\" fills it";
            Open(use);
        }
    } catch (const Run_Error& fault) {
        if (use == Store_Use::write)
            throw;
        m_database.reset();
        m_trouble = fault.Description();
    }
}

void Flight_Store::Open(Store_Use use) {
    std::error_code failure;
    if (use == Store_Use::look) {
        if (!std::filesystem::exists(m_file, failure))
            return;
        m_database = std::make_unique<Sqlite_Database>(m_file, SQLITE_OPEN_READONLY, m_patience);
    } else {
        std::filesystem::create_directories(m_file.parent_path());
        m_database = std::make_unique<Sqlite_Database>(
            m_file, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, m_patience);
    }
    m_database->Demand_Whole();
    auto version = m_database->Prepare("PRAGMA user_version");
    version.Step();
    if (version.Whole_Number(0) > store_version) {
        throw Run_Error(error_number::other,
                        From_Path(m_file) + ": the store was made by a newer Norvane");
    }
    m_has_planned = use == Store_Use::write || version.Whole_Number(0) >= planned_version;
    if (use == Store_Use::look) {
        // What a start left that was broken off before the first table.
        if (version.Whole_Number(0) == 0)
            m_database.reset();
        return;
    }
    version = {};
    m_database->Execute("BEGIN IMMEDIATE");
    m_database->Execute(
        fmt::format("CREATE TABLE IF NOT EXISTS flights(id TEXT PRIMARY KEY{}, track BLOB)",
                    Columns_Of<Flight_Summary>().declared)
            .c_str());
    Make_List<Named_Text>(*m_database, "settings");
    Make_List<Recorded_Event>(*m_database, "events");
    Make_List<Phase_Sum>(*m_database, "phases");
    Make_List<Flight_Incident>(*m_database, "incidents");
    Make_List<Landing_Record>(*m_database, "landings");
    Make_List<Touch>(*m_database, "touches", ", landing INTEGER");
    Make_List<Planned_Figure>(*m_database, "planned");
    m_database->Execute(fmt::format("PRAGMA user_version = {}", store_version).c_str());
    m_database->Execute("COMMIT");
}

void Flight_Store::Put(const Flight_Summary& flight) {
    Put_All({flight});
}

void Flight_Store::Put_All(const std::vector<Flight_Summary>& flights) {
    m_database->Execute("BEGIN IMMEDIATE");
    try {
        for (const Flight_Summary& flight : flights)
            Write(flight);
        m_database->Execute("COMMIT");
    } catch (...) {
        m_database->Roll_Back();
        throw;
    }
}

void Flight_Store::Write(const Flight_Summary& flight) {
    Delete(flight.id);
    const Column_Walk columns = Columns_Of<Flight_Summary>();
    auto row = m_database->Prepare(fmt::format("INSERT INTO flights(id{}, track) VALUES(?{}, ?)",
                                               columns.names, columns.marks));
    row.Bind(flight.id);
    Each_Field(flight, Row_Writer{row});
    row.Bind_Bytes(Pack_Track(flight.track));
    row.Step();
    Write_List(*m_database, "settings", flight.id, flight.settings);
    Write_List(*m_database, "events", flight.id, flight.events);
    Write_List(*m_database, "phases", flight.id, flight.phases);
    Write_List(*m_database, "incidents", flight.id, flight.incidents);
    Write_List(*m_database, "landings", flight.id, flight.landings);
    Write_Touches(*m_database, flight);
    Write_List(*m_database, "planned", flight.id, flight.planned);
}

void Flight_Store::Delete(const std::string& id) {
    m_database->Prepare("DELETE FROM flights WHERE id = ?").Bind(id).Step();
    for (const char* table : list_tables) {
        m_database->Prepare(fmt::format("DELETE FROM {} WHERE flight = ?", table)).Bind(id).Step();
    }
}

void Flight_Store::Read_Lists(Flight_Summary& flight) const {
    Read_List(*m_database, "settings", flight.id, flight.settings);
    Read_List(*m_database, "events", flight.id, flight.events);
    Read_List(*m_database, "phases", flight.id, flight.phases);
    Read_List(*m_database, "incidents", flight.id, flight.incidents);
    Read_List(*m_database, "landings", flight.id, flight.landings);
    if (m_has_planned)
        Read_List(*m_database, "planned", flight.id, flight.planned);
    auto row = m_database->Prepare(
        fmt::format("SELECT landing{} FROM touches WHERE flight = ? ORDER BY place",
                    Columns_Of<Touch>().names));
    row.Bind(flight.id);
    while (row.Step()) {
        const auto landing = static_cast<std::size_t>(row.Whole_Number(0));
        if (landing < flight.landings.size())
            Each_Field(flight.landings[landing].touches.emplace_back(), Row_Reader{row, 1});
    }
}

std::optional<Flight_Summary> Flight_Store::Find(const std::string& id) const {
    if (!m_database)
        return std::nullopt;
    try {
        auto row = m_database->Prepare(fmt::format("SELECT track{} FROM flights WHERE id = ?",
                                                   Columns_Of<Flight_Summary>().names));
        if (!row.Bind(id).Step())
            return std::nullopt;
        Flight_Summary flight;
        flight.id = id;
        Each_Field(flight, Row_Reader{row, 1});
        flight.track = Unpack_Track(row.Bytes(0));
        Read_Lists(flight);
        return flight;
    } catch (const Run_Error&) {
        return std::nullopt;
    }
}

std::vector<Flight_Summary> Flight_Store::List(const Flight_Filter& filter) const {
    std::vector<Flight_Summary> flights;
    if (!m_database)
        return flights;
    auto row = m_database->Prepare(fmt::format("SELECT id{} FROM flights ORDER BY began_utc, id",
                                               Columns_Of<Flight_Summary>().names));
    while (row.Step()) {
        Flight_Summary flight;
        flight.id = row.Text(0);
        Each_Field(flight, Row_Reader{row, 1});
        if (!filter.Takes(flight))
            continue;
        Read_Lists(flight);
        flights.push_back(std::move(flight));
    }
    return flights;
}

}  // namespace norvane
