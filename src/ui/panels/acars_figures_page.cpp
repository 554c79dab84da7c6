// Page 0 of the ACARS panel: the flight's identity, times, fuel, weights and distance.

#include <QHBoxLayout>
#include <array>
#include <optional>
#include <span>

#include "acarspanel/uc_acars.h"
#include "ui/controls/bind.h"
#include "ui/controls/value_label.h"
#include "ui/panels/acars_pages.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int date_characters = 12;
constexpr int type_characters = 16;
constexpr int id_characters = 10;
/// Four letters, and the mark of a code that nobody knows.
constexpr int icao_characters = 9;
constexpr int flight_digits = 12;
constexpr int name_digits = 40;
/// "1405Z", "12:34".
constexpr int time_digits = 6;
/// "123456 lbs".
constexpr int weight_digits = 11;
/// With "plan " in front.
constexpr int planned_time_digits = 10;
constexpr int planned_fuel_digits = 15;

struct Figure {
    const char* caption;
    Label ucACARS::*label;
    std::optional<Planned> planned = {};
};

constexpr std::array block_events{
    Figure{"Time OUT", &ucACARS::lblTimeOut, Planned::time_out},
    Figure{"Time OFF", &ucACARS::lblTimeOff, Planned::time_off},
    Figure{"Time ON", &ucACARS::lblTimeOn, Planned::time_on},
    Figure{"Time IN", &ucACARS::lblTimeIn, Planned::time_in},
};
constexpr std::array fuels{
    Figure{"Fuel OUT", &ucACARS::lblFuelOut, Planned::fuel_out},
    Figure{"Fuel OFF", &ucACARS::lblFuelOff, Planned::fuel_off},
    Figure{"Fuel ON", &ucACARS::lblFuelOn, Planned::fuel_on},
    Figure{"Fuel IN", &ucACARS::lblFuelIn},
    Figure{"Block Fuel", &ucACARS::lblBlockFuel, Planned::block_fuel},
    Figure{"Flight Fuel", &ucACARS::lblFlightFuel, Planned::flight_fuel},
};
constexpr std::array weights{
    Figure{"ZFW", &ucACARS::lblZFW},
    Figure{"Taxi Weight", &ucACARS::lblTaxiWeight},
    Figure{"Take Off Weight", &ucACARS::lblTakeOffWeight},
    Figure{"Landing Weight", &ucACARS::lblLandingWeight},
    Figure{"Ramp Weight", &ucACARS::lblRampWeight},
    Figure{"Distance", &ucACARS::lblDistance},
};

/// What was planned, small beside what was flown: the words alone, grey as one who does not press.
void Add_Planned(Form_Group& group, int row, ucACARS& panel, const Figure& figure) {
    Label& model = panel.lblPlanned.at(static_cast<std::size_t>(*figure.planned));
    auto* planned = new QLabel(&group);
    planned->setTextFormat(Qt::PlainText);
    planned->setEnabled(false);
    planned->setAccessibleName(QString("Planned ") + figure.caption);
    const int digits = Is_Fuel(*figure.planned) ? planned_fuel_digits : planned_time_digits;
    planned->setMinimumWidth(digits * planned->fontMetrics().horizontalAdvance('0'));
    Follow(*planned, model, [planned, &model] {
        planned->setText(model.Text().empty() ? QString() : "plan " + To_Q(model.Text()));
    });
    group.Add_Wide_Value({row, 1}, *planned);
}

void Add_Figures(Form_Group& group, ucACARS& panel, std::span<const Figure> figures, int digits) {
    int row = 0;
    for (const Figure& figure : figures) {
        group.Add_Figure({row, 0}, figure.caption, panel.*figure.label, digits);
        if (figure.planned)
            Add_Planned(group, row, panel, figure);
        ++row;
    }
}

void Keep_Room(QWidget& widget) {
    QSizePolicy policy = widget.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget.setSizePolicy(policy);
}

struct Airport {
    const char* caption;
    Text_Box ucACARS::*code;
    const char* name_caption;
    Label ucACARS::*name;
};

constexpr std::array airports{
    Airport{"Origin", &ucACARS::txtOrigin, "Origin airport", &ucACARS::lblOriginName},
    Airport{"Destination", &ucACARS::txtDestination, "Destination airport",
            &ucACARS::lblDestinationName},
};

Form_Group* Identity_Group(ucACARS& panel, Form_Page& page) {
    auto* group = new Form_Group("Flight", page);
    group->Add_Box({0, 0}, "Date", panel.txtDate, date_characters);
    group->Add_Box({0, 1}, "Aircraft Type", panel.txtAircraftType, type_characters);
    group->Add_Box({0, 2}, "Aircraft ID", panel.txtAircraftID, id_characters);
    QLabel& caption = group->Add_Caption({0, 3}, "ATC Flight");
    auto* flight = new Value_Label(flight_digits, group);
    Keep_Room(caption);
    Keep_Room(*flight);
    Bind_Caption(caption, panel.lblATCFlight);
    Bind(*flight, panel.lblATCFlight, caption.text());
    group->Add_Value({0, 3}, *flight);
    int row = 1;
    for (const Airport& airport : airports) {
        group->Add_Box({row, 0}, airport.caption, panel.*airport.code, icao_characters);
        auto* name = new Value_Label(name_digits, group);
        Bind(*name, panel.*airport.name, airport.name_caption);
        group->Add_Wide_Value({row, 1, 3}, *name);
        ++row;
    }
    group->Stretch_Values(3);
    return group;
}

Form_Group* Times_Group(ucACARS& panel, Form_Page& page) {
    auto* group = new Form_Group("Times", page);
    Add_Figures(*group, panel, block_events, time_digits);
    // The same span twice: in hours and as hours and minutes.
    const auto add_span = [&](int row, const QString& caption, Label& hours, Label& hhmm) {
        group->Add_Figure({row, 0}, caption, hours, time_digits);
        QLabel& hhmm_caption = group->Add_Caption({row, 1}, "HH:MM");
        Bind_Caption(hhmm_caption, hhmm);
        auto* figure = new Value_Label(time_digits, group);
        Bind(*figure, hhmm, caption + " " + hhmm_caption.text());
        group->Add_Value({row, 1}, *figure);
    };
    constexpr int rows = block_events.size();
    add_span(rows, "Block Time", panel.lblBlockTime, panel.lblBlockTimeHHMM);
    add_span(rows + 1, "Flight Time", panel.lblFlightTime, panel.lblFlightTimeHHMM);
    group->Stretch_After(1);
    return group;
}

Form_Group* Weighed_Group(const QString& heading, std::span<const Figure> figures, ucACARS& panel,
                          Form_Page& page) {
    auto* group = new Form_Group(heading, page);
    Add_Figures(*group, panel, figures, weight_digits);
    group->Stretch_After(1);
    return group;
}

}  // namespace

Form_Page* Make_Figures_Page(ucACARS& panel, QWidget* parent) {
    auto* page = new Form_Page(parent);
    Form_Group* identity = Identity_Group(panel, *page);
    page->Rows().addWidget(identity);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(2 * page->Rows().spacing());
    Form_Group* times = Times_Group(panel, *page);
    columns->addWidget(times, 1);
    columns->addWidget(Weighed_Group("Fuel", fuels, panel, *page), 1);
    columns->addWidget(Weighed_Group("Weights and Distance", weights, panel, *page), 1);
    page->Rows().addLayout(columns);
    page->Rows().addStretch(1);
    Align_First_Captions({identity, times});
    return page;
}

}  // namespace norvane
