// The flight as the panel shows it, as a page for the browser.

#include <array>
#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "acarspanel/uc_acars.h"
#include "common/log_error.h"
#include "flightlog/acars_page.h"

namespace norvane {

namespace {

using Panel = ACARS_Form;
using Row = Row_Plan<std::variant<Label Panel::*, Text_Box Panel::*>>;
constexpr Row spacer = Planned_Spacer<std::variant<Label Panel::*, Text_Box Panel::*>>();

constexpr auto aircraft_rows = std::to_array<Row>({
    {{{{"Aircraft ID", &Panel::txtAircraftID}, {"ATC Flight", &Panel::lblATCFlight}}}},
    {{{{"Flight Number", &Panel::txtFlightNumber}, {"Aircraft Type", &Panel::txtAircraftType}}}},
    {{{{"Zero Fuel Weight", &Panel::lblZFW}, {"Flight Level", &Panel::txtFlightLevel}}}},
    {{{{"PAX", &Panel::txtPax}, {"Cargo/Baggage", &Panel::txtCargo}}}},
});

constexpr auto flight_rows = std::to_array<Row>({
    {{{{"Date", &Panel::txtDate}}}},
    spacer,
    {{{{"Origin", &Panel::txtOrigin}, {"Airport", &Panel::lblOriginName}}}, Row_Kind::wide},
    spacer,
    {{{{"Time OUT", &Panel::lblTimeOut},
       {"Taxi Weight", &Panel::lblTaxiWeight},
       {"Fuel OUT", &Panel::lblFuelOut}}}},
    {{{{"Time OFF", &Panel::lblTimeOff},
       {"Take Off Weight", &Panel::lblTakeOffWeight},
       {"Fuel OFF", &Panel::lblFuelOff}}}},
    spacer,
    {{{{"Destination", &Panel::txtDestination}, {"Airport", &Panel::lblDestinationName}}},
     Row_Kind::wide},
    spacer,
    {{{{"Time ON", &Panel::lblTimeOn},
       {"Landing Weight", &Panel::lblLandingWeight},
       {"Fuel ON", &Panel::lblFuelOn}}}},
    {{{{"Time IN", &Panel::lblTimeIn},
       {"Ramp Weight", &Panel::lblRampWeight},
       {"Fuel IN", &Panel::lblFuelIn}}}},
    spacer,
    {{{{"Block Time", &Panel::lblBlockTime},
       {"Block HH:MM", &Panel::lblBlockTimeHHMM},
       {"Block Fuel", &Panel::lblBlockFuel}}}},
    {{{{"Flight Time", &Panel::lblFlightTime},
       {"Flight HH:MM", &Panel::lblFlightTimeHHMM},
       {"Flight Fuel", &Panel::lblFlightFuel}}}},
    spacer,
    {{{{"Dep IAS", &Panel::lblIASTakeOff}, {"N Settings", &Panel::lblNSettings}}}, Row_Kind::wide},
    {{{{"Arr IAS", &Panel::lblIASLanding}, {"Vertical Speed", &Panel::lblVS}}}},
    spacer,
    {{{{"Dep Max Taxi Speed", &Panel::lblMaxTaxiOrigin}, {blank, {}}, {blank, {}}}}},
    {{{{"Arr Max Taxi Speed", &Panel::lblMaxTaxiDestination}, {blank, {}}, {blank, {}}}}},
    spacer,
    {{{{"Distance", &Panel::lblDistance}, {blank, {}}, {blank, {}}}}},
});

template <class Fields>
std::vector<HTML_Pair> Pairs_Of(const Fields& fields) {
    std::vector<HTML_Pair> pairs;
    pairs.reserve(fields.size());
    for (const Custom_Field& field : fields)
        pairs.push_back({field.lblCaption.Text(), field.Value()});
    return pairs;
}

}  // namespace

void ucACARS::ACARS_REPORT() {
    Guarded(m_services, "ucACARS.ACARS_REPORT()", Show::box, [&] {
        const std::filesystem::path report = [&] {
            const Busy_Cursor busy(m_services.desktop);
            const auto value = [&](const auto& source) {
                return std::visit(
                    [&](auto member) { return Without_Placeholder((this->*member).Text()); },
                    source);
            };
            ACARS_Page page{Filled_Rows(aircraft_rows, value),
                            Filled_Rows(flight_rows, value),
                            Without_Placeholder(txtWXOrigin.Text()),
                            Without_Placeholder(txtWXDestination.Text()),
                            Without_Placeholder(txtFlightPlan.Text()),
                            Without_Placeholder(txtComments.Text())};
            if (m_pages.Has_Optional_Fields())
                Add_Own_Fields(page, Pairs_Of(optFields));
            if (m_pages.Has_Airline_Fields())
                Add_Own_Fields(page, Pairs_Of(vaFields));
            return Write_ACARS_Page(m_services, page);
        }();
        m_services.desktop.Open_File(report);
    });
}

}  // namespace norvane
