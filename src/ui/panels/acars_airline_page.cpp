// Page 1 of the ACARS panel: what the airline wants to know of the flight, and how it was flown.

#include "acarspanel/uc_acars.h"
#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/controls/value_label.h"
#include "ui/panels/acars_pages.h"

namespace norvane {

namespace {

constexpr int flight_number_characters = 12;
constexpr int pax_characters = 6;
constexpr int cargo_characters = 12;
constexpr int level_characters = 8;
/// "250 kts"; "-1234 ft/min".
constexpr int speed_digits = 8;
constexpr int vertical_speed_digits = 13;
constexpr int settings_digits = 40;

Form_Group* Flight_Group(ucACARS& panel, Form_Page& page) {
    auto* group = new Form_Group("Flight", page);
    group->Add_Box({0, 0}, "Flight Number", panel.txtFlightNumber, flight_number_characters);
    group->Add_Box({0, 1}, "Pax", panel.txtPax, pax_characters);
    group->Add_Box({0, 2}, "Cargo", panel.txtCargo, cargo_characters);
    group->Add_Box({0, 3}, "Flight Level", panel.txtFlightLevel, level_characters);
    int pair = 4;
    const auto add_check = [&](const QString& caption, Check_Box& model) {
        auto* box = new QCheckBox(caption, group);
        Bind(*box, model);
        page.Note_Input(model, *box);
        group->Add_Value({0, pair++}, *box);
    };
    add_check("IFR", panel.chkIFR);
    add_check("VFR", panel.chkVFR);
    group->Stretch_After(pair - 1);
    return group;
}

/// Where a plan may come from, below each other beside the route.
QWidget* Plan_Links(ucACARS& panel, QWidget& parent) {
    auto* links = new QWidget(&parent);
    auto* rows = new QVBoxLayout(links);
    rows->setContentsMargins(0, 0, 0, 0);
    for (Link* model : {&panel.hypFP, &panel.hypSimBrief}) {
        auto* link = new Link_Button({}, links);
        Bind(*link, *model);
        rows->addWidget(link, 0, Qt::AlignLeft);
    }
    return links;
}

Form_Group* Route_Group(ucACARS& panel, Form_Page& page) {
    auto* group = new Form_Group("Weather and Route", page);
    group->Add_Box({0, 0}, "WX - Origin", panel.txtWXOrigin, 0);
    group->Add_Box({1, 0}, "WX - Destination", panel.txtWXDestination, 0);
    group->Add_Text({2, 0}, *Plan_Links(panel, *group), "Flight Plan", panel.txtFlightPlan);
    auto* comments = new QLabel("Comments", group);
    comments->setBuddy(&group->Add_Text({3, 0}, *comments, comments->text(), panel.txtComments));
    group->Stretch_Values(0);
    return group;
}

Form_Group* Performance_Group(ucACARS& panel, Form_Page& page) {
    auto* group = new Form_Group("Performance", page);
    group->Add_Figure({0, 0}, "Max Taxi Speed Origin", panel.lblMaxTaxiOrigin, speed_digits);
    group->Add_Figure({0, 1}, "Take Off IAS", panel.lblIASTakeOff, speed_digits);
    group->Add_Figure({0, 2}, "Vertical Speed at Touch Down", panel.lblVS, vertical_speed_digits);
    group->Add_Figure({1, 0}, "Max Taxi Speed Destination", panel.lblMaxTaxiDestination,
                      speed_digits);
    group->Add_Figure({1, 1}, "Landing IAS", panel.lblIASLanding, speed_digits);
    // Two figures for each engine.
    group->Add_Figure({2, 0, 2}, "Take Off N Settings", panel.lblNSettings, settings_digits);
    group->Stretch_After(2);
    return group;
}

}  // namespace

Form_Page* Make_Airline_Page(ucACARS& panel, QWidget* parent) {
    auto* page = new Form_Page(parent);
    Form_Group* flight = Flight_Group(panel, *page);
    Form_Group* route = Route_Group(panel, *page);
    page->Rows().addWidget(flight);
    page->Rows().addWidget(route, 1);
    page->Rows().addWidget(Performance_Group(panel, *page));
    Align_First_Captions({flight, route});
    return page;
}

}  // namespace norvane
