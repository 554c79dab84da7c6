#include "settingspanel/uc_settings.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "common/boxes.h"
#include "common/find_file.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/airline_list.h"
#include "config/cls_va_settings.h"
#include "config/log_names.h"
#include "config/setting_codes.h"
#include "settingspanel/settings_controls.h"
#include "simlink/link_address.h"

namespace norvane {

namespace {

/// A list without other controls needs something to choose from.
constexpr std::size_t fewest_choices = 2;
constexpr std::int32_t take_off_step_ft = 5;

void Select_Exactly(Combo_Box& list, const std::string& text) {
    const auto& entries = list.Entries();
    const auto found = std::find(entries.begin(), entries.end(), text);
    if (found == entries.end())
        list.Select_Text(text);
    else
        list.Select(static_cast<int>(found - entries.begin()));
}

/// "^" separates a definition's parts and can be in none of them.
void Clean_Definition_Part(Text_Box& box) {
    if (box.Text().find('^') != std::string::npos)
        box.Set_Text(Replace_All(box.Text(), "^", "/"));
}

std::string Definition_Of(const ucSettings::Field_Row& row) {
    const std::string name = Trim(row.txtName.Text());
    if (name.empty())
        return {};
    return name + "^" + (row.cboType.Selected() == drop_list ? Trim(row.txtList.Text()) : "");
}

std::string Caption_Of(std::string_view definition) {
    return Trim(Before(definition, "^"));
}

/// The captions in effect after a start: definitions close up towards the first.
std::vector<std::string> Captions_In_Effect(const std::vector<std::string>& definitions) {
    std::vector<std::string> captions;
    for (const std::string& definition : definitions) {
        if (!definition.empty())
            captions.push_back(Caption_Of(definition));
    }
    return captions;
}

}  // namespace

ucSettings::ucSettings(Services& services, clsAppSettings& settings, clsVASettings& airline)
    : airline_lookup(services), m_services(services), m_settings(settings), m_airline(airline) {
    Connect();
    UCI();
}

std::string ucSettings::Simulator_Tooltip() {
    return "Where the simulator is: host:port or unix:/path; empty for " +
           std::string(default_link_address) + ".  --sim and $NORVANE_SIM come first.";
}

void ucSettings::UCI() {
    Guarded(m_services, "ucSettings.UCI()", Show::box, [&] {
        for (const Setting_List& row : Setting_Lists())
            (this->*row.list).Set_Entries({row.entries.begin(), row.entries.end()});
        std::vector<std::string> altitudes;
        for (std::int32_t feet = take_off_step_ft; feet <= 100; feet += take_off_step_ft)
            altitudes.push_back(fmt::format("{}", feet));
        cboTakeOffAlt.Set_Entries(std::move(altitudes));
        for (Field_Row& row : optFields)
            row.cboType.Set_Entries({"Free Text", "Drop List"});
        Load_WX_Combo();
        Refresh_VA_Information();
        Get_Settings();
    });
}

void ucSettings::Connect() {
    for (std::size_t i = 0; i < cmdColor.size(); ++i) {
        cmdColor[i].clicked.Connect([this, i] {
            Guarded(m_services, "ucSettings.cmdColor_Click()", Show::silent, [&] {
                if (const auto color = m_services.desktop.Choose_Color(swColor[i].Color()))
                    swColor[i].Set_Color(*color);
            });
        });
    }
    cmdReset.clicked.Connect([this] {
        for (std::size_t i = 0; i < swColor.size(); ++i)
            swColor[i].Set_Color(Setting_Colors()[i].otherwise);
    });
    for (const Take_Off choice : {on_ground_flag, take_off_altitude}) {
        optACARS[choice].edited.Connect([this, choice] {
            // A click on the option that holds already leaves the altitude as it was chosen.
            if (optACARS[choice == on_ground_flag ? take_off_altitude : on_ground_flag].Chosen())
                Choose_Take_Off(choice);
        });
    }
    chkACARS[save_pirep].edited.Connect([this] {
        if (!chkACARS[save_pirep].Checked())
            chkACARS[send_pirep].Set_Checked(false);
        Enable_Controls();
    });
    chkACARS[vatsim].edited.Connect([this] {
        txtVATSIM_PID.Set_Text({});
        Enable_Controls();
    });
    for (Field_Row& row : optFields) {
        for (Text_Box* part : {&row.txtName, &row.txtList})
            part->edited.Connect([part] { Clean_Definition_Part(*part); });
        row.cboType.edited.Connect([this, &row] {
            if (row.cboType.Selected() != drop_list)
                row.txtList.Set_Text({});
            Enable_Controls();
        });
    }
    txtPilot[iata].edited.Connect([this] { Follow_IATA(); });
    cboVA.edited.Connect([this] { Choose_Airline(); });
    for (Link& link : hypAirline)
        link.clicked.Connect([this] { Get_Airline_Info(); });
    hypSave.clicked.Connect([this] { Save_Settings(); });
    hypCancel.clicked.Connect([this] { Get_Settings(); });
    m_connections.Keep(m_airline.Change.Connect([this] { Show_Sending(); }));
}

void ucSettings::ACARS_STATE(bool enabled) {
    const bool was_unlocked = std::exchange(m_unlocked, enabled);
    // A flight is flown for the airline that is set, not for one that was looked at.
    if (was_unlocked && !enabled)
        Leave();
    Enable_Controls();
}

void ucSettings::Leave() {
    if (!Equal_No_Case(m_shown_airline, m_settings.Virtual_Airline()))
        Get_VA_Settings();
    else
        Select_Exactly(cboLog, m_settings.Virtual_Airline_Log());
}

/// Who is usable, by the lock and by what the controls themselves say.
void ucSettings::Enable_Controls() {
    lblLocked.Set_Visible(!m_unlocked);
    for (const Captioned_List& row : ACARS_Lists())
        row.list.Set_Enabled(m_unlocked);
    txtSimulator.Set_Enabled(m_unlocked);
    for (Option_Button& option : optACARS)
        option.Set_Enabled(m_unlocked);
    cboTakeOffAlt.Set_Enabled(m_unlocked && optACARS[take_off_altitude].Chosen());
    for (Check_Box& box : chkACARS)
        box.Set_Enabled(m_unlocked);
    chkACARS[send_pirep].Set_Enabled(m_unlocked && chkACARS[save_pirep].Checked());
    txtVATSIM_PID.Set_Enabled(m_unlocked && chkACARS[vatsim].Checked());
    for (Field_Row& row : optFields)
        row.txtList.Set_Enabled(row.cboType.Selected() == drop_list);
    fraVA.Set_Enabled(cboVA.Entries().size() >= fewest_choices);
    cboVA.Set_Enabled(m_unlocked && fraVA.Enabled());
    cboLog.Set_Enabled(m_unlocked && cboLog.Entries().size() >= fewest_choices);
    for (Text_Box& box : txtPilot)
        box.Set_Enabled(m_unlocked);
    for (Link& link : hypAirline)
        link.Set_Enabled(m_unlocked);
    chkIATAPrefix.Set_Enabled(m_unlocked && !Trimmed_View(txtPilot[iata].Text()).empty());
}

void ucSettings::Choose_Tab(Page page) {
    Guarded(m_services, "ucSettings.ts_Click()", Show::box, [&] {
        if (page == m_page)
            return;
        if (page == virtual_airline)
            Refresh_VA_Information();
        m_page = page;
        Page_Changed.Emit();
    });
}

std::vector<ucSettings::Captioned_List> ucSettings::ACARS_Lists() {
    std::vector<Captioned_List> lists;
    for (const Setting_List& row : Setting_Lists())
        lists.push_back({this->*row.list, row.caption, row.tooltip});
    return lists;
}

/// "FS", the names of the sources in their order, and "NONE" where it is the setting and no source
/// is named so: it needs none, and saving must not turn the weather on.
void ucSettings::Load_WX_Combo() {
    std::vector<std::string> sources{std::string(Name_Of(Weather_Source::simulator))};
    Guarded(m_services, "ucSettings.Load_WX_Combo()", Show::box, [&] {
        const auto file = Find_Path(m_services, m_services.program_directory, "bin\\url.cfg");
        if (!std::filesystem::exists(file))
            return;
        for (const std::string& line : Read_Lines(file)) {
            if (line.starts_with('['))
                sources.emplace_back(Before(std::string_view(line).substr(1), "]"));
        }
    });
    const std::string& stored = m_settings.WX_URL();
    if (Weather_Source_Of(stored) == Weather_Source::none &&
        std::find(sources.begin(), sources.end(), stored) == sources.end())
        sources.push_back(stored);
    cboWX.Set_Entries(std::move(sources));
}

void ucSettings::Refresh_VA_Information() {
    const std::string log = cboLog.Text();
    cboVA.Set_Entries(List_Airlines(m_services));
    Load_Flight_Logs();
    cboVA.Select_Text(m_shown_airline);
    if (cboVA.Selected() < 0 && !Equal_No_Case(m_shown_airline, m_settings.Virtual_Airline())) {
        Get_VA_Settings();
        return;
    }
    Select_Exactly(cboLog, log);
    if (cboLog.Selected() < 0)
        Select_Exactly(cboLog, m_settings.Values_With_Airline(m_shown_airline).Virtual_Airline_Log);
    Enable_Controls();
}

void ucSettings::Load_Flight_Logs() {
    Guarded(m_services, "ucSettings.Load_Flight_Logs()", Show::box,
            [&] { cboLog.Set_Entries(List_Logs(m_services)); });
}

void ucSettings::Get_VA_Settings() {
    Guarded(m_services, "ucSettings.Get_VA_Settings()", Show::box, [&] {
        m_shown_airline = m_settings.Virtual_Airline();
        cboVA.Select_Text(m_shown_airline);
        Show_Airline(m_settings.Values());
    });
}

void ucSettings::Show_Airline(const App_Setting_Values& values) {
    Select_Exactly(cboLog, values.Virtual_Airline_Log);
    for (std::size_t i = 0; i < txtPilot.size(); ++i)
        txtPilot[i].Set_Text(values.*Pilot_Texts()[i].value);
    chkIATAPrefix.Set_Checked(values.Airline_IATAPrefix);
    Follow_IATA();
}

/// Without a code there is no prefix to show.
void ucSettings::Follow_IATA() {
    if (Trimmed_View(txtPilot[iata].Text()).empty())
        chkIATAPrefix.Set_Checked(false);
    Enable_Controls();
}

void ucSettings::Get_Settings() {
    Guarded(m_services, "ucSettings.Get_Settings()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        for (std::size_t i = 0; i < swColor.size(); ++i)
            swColor[i].Set_Color((m_settings.*Setting_Colors()[i].read)());
        for (const Setting_Flag& row : Setting_Flags())
            chkACARS[row.option].Set_Checked((m_settings.*row.read)());
        Show_Sending();
        for (const Setting_List& row : Setting_Lists()) {
            if (row.read != nullptr)
                (this->*row.list).Select((m_settings.*row.read)());
        }
        cboATCModel.Select(m_settings.ACARS_ATCModel() ? 1 : 0);
        cboWX.Select(0);
        const auto& sources = cboWX.Entries();
        const auto source = std::find(sources.begin(), sources.end(), m_settings.WX_URL());
        if (source != sources.end())
            cboWX.Select(static_cast<int>(source - sources.begin()));
        txtSimulator.Set_Text(m_settings.Simulator_Address());
        Choose_Take_Off(m_settings.ACARS_TakeOff_Alt() != 0 ? take_off_altitude : on_ground_flag);
        chkACARS[vatsim].Set_Checked(Plan_Source{m_settings.VATSIM_FP()} == Plan_Source::network);
        txtVATSIM_PID.Set_Text(m_settings.VATSIM_PID());
        txtSimBrief_User.Set_Text(m_settings.SimBrief_User());
        Get_Opt_Fields();
        Get_Recordings();
        Get_VA_Settings();
    });
}

void ucSettings::Get_Recordings() {
    std::vector<std::string> entries;
    int selected = -1;
    for (Recording_Choice& choice : Recording_Choices(m_settings.OPT_Recordings())) {
        if (choice.flights == m_settings.OPT_Recordings())
            selected = static_cast<int>(entries.size());
        entries.push_back(std::move(choice.words));
    }
    cboRecordings.Set_Entries(std::move(entries));
    cboRecordings.Select(selected);
}

void ucSettings::Show_Sending() {
    chkACARS[send_pirep].Set_Visible(!m_airline.Script_PIREP().empty());
}

void ucSettings::Choose_Take_Off(Take_Off choice) {
    for (std::size_t i = 0; i < optACARS.size(); ++i)
        optACARS[i].Set_Chosen(i == choice);
    const std::int32_t feet = m_settings.ACARS_TakeOff_Alt();
    if (choice == take_off_altitude)
        cboTakeOffAlt.Select_Text(fmt::format("{}", feet == 0 ? take_off_step_ft : feet));
    else
        cboTakeOffAlt.Select(-1);
    Enable_Controls();
}

void ucSettings::Get_Opt_Fields() {
    Guarded(m_services, "ucSettings.Get_Opt_Fields()", Show::silent, [&] {
        for (std::size_t i = 0; i < optFields.size(); ++i) {
            const auto parts = Split(m_settings.OptFields(i), '^');
            const std::string entries = parts.size() > 1 ? parts[1] : std::string();
            optFields[i].txtName.Set_Text(parts.empty() ? std::string() : parts[0]);
            optFields[i].cboType.Select(entries.empty() ? free_text : drop_list);
            optFields[i].txtList.Set_Text(entries);
        }
    });
}

/// Looking at an airline is not flying for it: the settings stay as they are.
void ucSettings::Choose_Airline() {
    if (cboVA.Selected() < 0)
        return;
    Guarded(m_services, "ucSettings.cboVA_Click()", Show::silent, [&] {
        m_shown_airline = cboVA.Text();
        Show_Airline(m_settings.Values_With_Airline(m_shown_airline));
    });
}

void ucSettings::Get_Airline_Info() {
    Guarded(m_services, "ucSettings.Get_Airline_Info()", Show::silent, [&] {
        std::string iata_code;
        std::string icao_code;
        // A flight may have begun while the list was open.
        if (!airline_lookup.LookUp_Airline(iata_code, icao_code) || !m_unlocked)
            return;
        txtPilot[iata].Set_Text(iata_code);
        txtPilot[icao].Set_Text(icao_code);
        Follow_IATA();
    });
}

/// Values of optional fields stand in the flight logs by position. False when the pilot would not
/// have old values under other captions.
bool ucSettings::May_Move_Values(const std::vector<std::string>& definitions) {
    std::vector<std::string> before_save;
    for (std::size_t i = 0; i < optFields.size(); ++i)
        before_save.push_back(m_settings.OptFields(i));
    const auto before = Captions_In_Effect(before_save);
    const auto after = Captions_In_Effect(definitions);
    std::string moved;
    for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
        if (before[i] != after[i])
            moved += fmt::format("{}values of \"{}\" will stand under \"{}\"", cr_lf, before[i],
                                 after[i]);
    }
    if (moved.empty())
        return true;
    return Ask(m_services.desktop,
               "Flights keep the values of their optional fields by position.  With this change" +
                   moved + "." + std::string(cr_lf) + "Save it?") == Answer::yes;
}

/// True when the simulator cannot be looked for where the pilot typed, and says so.
bool ucSettings::Refuse_Address() {
    const std::string address = Trim(txtSimulator.Text());
    if (!m_unlocked || address.empty() || Link_Address_Fault(address).empty())
        return false;
    Tell(m_services.desktop,
         fmt::format("Nothing was saved: \"{}\" is no address of a simulator.  Please type the "
                     "computer's name and the port with \":\" between them, as in {}, or unix: and "
                     "the path of a socket; leave the field empty for {}.",
                     address, default_link_address, default_link_address),
         Icon::exclamation);
    return true;
}

void ucSettings::Save_Settings() {
    Guarded(m_services, "ucSettings.Save_Settings()", Show::box, [&] {
        std::vector<std::string> definitions;
        for (const Field_Row& row : optFields)
            definitions.push_back(Definition_Of(row));
        if (Refuse_Address() || !May_Move_Values(definitions))
            return;
        std::string log;
        if (Assign_And_Save(definitions, log))
            Tell_Saved(definitions, log);
    });
}

/// `log`: the log that flights go to from now on, where it is another one.
bool ucSettings::Assign_And_Save(const std::vector<std::string>& definitions, std::string& log) {
    const Busy_Cursor busy(m_services.desktop);
    // What is locked stays as it is, and so does the airline on the flight's panel. A flight may
    // begin while boxes are open below; it finds what was locked when it began.
    const bool unlocked = m_unlocked;
    for (std::size_t i = 0; i < swColor.size(); ++i)
        (m_settings.*Setting_Colors()[i].assign)(swColor[i].Color());
    if (unlocked)
        Assign_Flight_Settings();
    for (std::size_t i = 0; i < definitions.size(); ++i)
        m_settings.Set_OptFields(i, definitions[i]);
    m_settings.Set_SimBrief_User(txtSimBrief_User.Text());
    const auto recordings = Recording_Choices(m_settings.OPT_Recordings());
    if (cboRecordings.Selected() >= 0)
        m_settings.Set_OPT_Recordings(
            recordings.at(static_cast<std::size_t>(cboRecordings.Selected())).flights);
    if (unlocked)
        log = Assign_Airline_Settings();
    const bool saved = m_settings.Save_Settings();
    // Even when a part could not be saved: the program flies for one airline.
    if (unlocked)
        m_airline.Get_VA_Settings(m_settings.Virtual_Airline());
    // Last, because the flight log may ask about the edits in the log that is left.
    if (saved && !log.empty())
        m_settings.Set_FlightLog(log);
    return saved;
}

void ucSettings::Tell_Saved(const std::vector<std::string>& definitions, const std::string& log) {
    const bool has_fields = std::any_of(definitions.begin(), definitions.end(),
                                        [](const std::string& text) { return !text.empty(); });
    std::string words = "Norvane settings saved.";
    if (has_fields)
        words =
            "Changes made to optional Flight Log fields will take effect when Norvane is "
            "restarted." +
            std::string(cr_lf) + words;
    if (!log.empty() && m_settings.FlightLog() == log)
        words += fmt::format("{}Flights are logged in \"{}\" from now on.", cr_lf, log);
    Tell(m_services.desktop, words);
}

/// A list in which nothing is selected leaves its setting alone.
void ucSettings::Assign_Flight_Settings() {
    for (const Setting_Flag& row : Setting_Flags())
        (m_settings.*row.assign)(chkACARS[row.option].Checked());
    for (const Setting_List& row : Setting_Lists()) {
        const int position = (this->*row.list).Selected();
        if (row.assign != nullptr && position >= 0)
            (m_settings.*row.assign)(position);
    }
    m_settings.Set_Simulator_Address(txtSimulator.Text());
    m_settings.Set_ACARS_ATCModel(cboATCModel.Selected() == 1);
    m_settings.Set_WX_URL(cboWX.Text());
    if (optACARS[on_ground_flag].Chosen())
        m_settings.Set_ACARS_TakeOff_Alt(0);
    else if (cboTakeOffAlt.Selected() >= 0)
        m_settings.Set_ACARS_TakeOff_Alt((cboTakeOffAlt.Selected() + 1) * take_off_step_ft);
    m_settings.Set_VATSIM_FP(static_cast<std::int32_t>(
        chkACARS[vatsim].Checked() ? Plan_Source::network : Plan_Source::file));
    m_settings.Set_VATSIM_PID(txtVATSIM_PID.Text());
}

/// The log that becomes the active one: only another airline, or another default log of the same
/// one, changes where flights go. Empty otherwise.
std::string ucSettings::Assign_Airline_Settings() {
    const std::string airline_before = m_settings.Virtual_Airline();
    const std::string log_before = m_settings.Virtual_Airline_Log();
    if (cboVA.Selected() >= 0 && !Equal_No_Case(cboVA.Text(), airline_before))
        m_settings.Set_Virtual_Airline(cboVA.Text());
    std::string log;
    if (!fraVA.Enabled()) {
        m_settings.Note_Virtual_Airline_Log(m_settings.FlightLog());
    } else if (cboLog.Selected() >= 0) {
        m_settings.Note_Virtual_Airline_Log(cboLog.Text());
        const bool changed =
            cboLog.Text() != log_before || m_settings.Virtual_Airline() != airline_before;
        if (changed && cboLog.Text() != m_settings.FlightLog())
            log = cboLog.Text();
    }
    for (std::size_t i = 0; i < txtPilot.size(); ++i)
        (m_settings.*Pilot_Texts()[i].assign)(txtPilot[i].Text());
    m_settings.Set_Airline_IATAPrefix(chkIATAPrefix.Checked());
    return log;
}

}  // namespace norvane
