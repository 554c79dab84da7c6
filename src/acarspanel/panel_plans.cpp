// Flight plans: from a file that the pilot chooses, the online network's data, and SimBrief.

#include "acarspanel/uc_acars.h"

#include <fmt/format.h>

#include "acars/cls_acars.h"
#include "acarspanel/simbrief_fields.h"
#include "common/boxes.h"
#include "common/log_error.h"
#include "common/services.h"
#include "net/vatsim_data.h"
#include "simdata/cls_ini_file.h"
#include "simdata/plan_choice.h"

namespace norvane {

namespace {

constexpr std::string_view cut_plan =
    "The online network sent only a part of your flight plan.  What came stands on the panel; "
    "please enter the rest yourself.";

}  // namespace

void ucACARS::Load_Flight_Plan() {
    Guarded(m_services, "ucACARS.hypFP_Click()", Show::silent, [&] {
        const int round = m_round.Now();
        const std::filesystem::path file = Get_Flight_Plan();
        // The flight goes on behind the dialog: it may be over.
        if (!file.empty() && Is_Active() && !m_round.Is_Over(round))
            Read_Flight_Plan(file);
    });
}

std::filesystem::path ucACARS::Get_Flight_Plan() {
    std::filesystem::path chosen;
    Guarded(m_services, "ucACARS.Get_Flight_Plan()", Show::silent,
            [&] { chosen = Choose_Flight_Plan(m_services); });
    return chosen;
}

void ucACARS::Read_Flight_Plan(const std::filesystem::path& file) {
    Guarded(m_services, "ucACARS.Read_Flight_Plan()", Show::silent, [&] {
        m_store.facts.plan_read = true;
        clsIniFile plan(m_services);
        plan.Set_INI_FilePath(file);
        plan.Get_Flight_Plan();
        txtOrigin.Set_Text({});
        txtDestination.Set_Text({});
        Take_Airport(flight_end::origin, plan.Flight_Origin_ICAO(), plan.Flight_Origin_Name());
        Take_Airport(flight_end::destination, plan.Flight_Destination_ICAO(),
                     plan.Flight_Destination_Name());
        txtFlightPlan.Set_Text(plan.FLIGHT_PLAN());
        txtFlightLevel.Set_Text(plan.FLIGHT_LEVEL());
        Set_Rules(plan.Flight_Type() == "IFR");
    });
}

void ucACARS::Read_VATSIM_Data(std::string_view line) {
    const bool is_whole = Guarded(m_services, "ucACARS.Read_VATSIM_Data()", Show::silent, [&] {
        m_store.facts.plan_read = true;
        network_plan.Set_Applied(true);
        m_store.Note_Change();
        // The network's line comes with its end, which is no part of the last field.
        const std::vector<std::string> fields = Split(line.substr(0, line.find('\r')), ':');
        const auto field = [&](std::size_t place) {
            if (place >= fields.size()) {
                throw Run_Error(error_number::subscript_out_of_range,
                                fmt::format("The network's line has {} fields, none at {}",
                                            fields.size(), place));
            }
            return fields[place];
        };
        const auto airport = [&](std::size_t end, const std::string& code) {
            Take_Airport(end, code, Get_Airport_Name(m_services, code));
        };
        Show_ATC_Flight(field(vatsim_place::callsign));
        txtAircraftType.Set_Text(field(vatsim_place::aircraft));
        airport(flight_end::origin, field(vatsim_place::departure));
        airport(flight_end::destination, field(vatsim_place::arrival));
        txtFlightPlan.Set_Text(field(vatsim_place::route));
        txtFlightLevel.Set_Text(field(vatsim_place::altitude));
        Set_Rules(field(vatsim_place::rules) == "I");
    });
    if (!is_whole)
        Tell(m_services.desktop, cut_plan, Icon::exclamation);
}

void ucACARS::Read_SimBrief_Plan(const Simbrief_Plan& plan) {
    Guarded(m_services, "ucACARS.Read_SimBrief_Plan()", Show::silent, [&] {
        m_store.facts.plan_read = true;
        m_store.facts.planned = Planned_Text(Planned_Of(plan));
        // The pilot has a plan: no other one takes its place, nor its call sign.
        network_plan.Set_Applied(true);
        network_plan.Look(false);
        for (const Simbrief_Field& field : Simbrief_Fields(plan, m_parts.settings))
            (this->*field.box).Set_Text(field.text);
        for (const std::size_t end : {flight_end::origin, flight_end::destination}) {
            const auto& airport = end == flight_end::origin ? plan.origin : plan.destination;
            if (airport.icao.empty())
                continue;
            const std::string known = Get_Airport_Name(m_services, airport.icao);
            Take_Airport(end, airport.icao, known.empty() ? airport.name : known);
        }
        if (!plan.call_sign.empty())
            Show_ATC_Flight(plan.call_sign);
        if (plan.is_ifr)
            Set_Rules(*plan.is_ifr);
        if (m_steps.Engine() != nullptr && !txtFlightNumber.Is_Empty())
            m_steps.Engine()->Set_Airline_Flight_Number(txtFlightNumber.Text());
        Show_Planned(Planned_Of(plan), m_parts.settings, *this);
        simbrief.planned.Emit(m_store.facts.planned);
        m_store.Note_Change();
    });
}

}  // namespace norvane
