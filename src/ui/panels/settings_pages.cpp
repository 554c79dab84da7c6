#include "ui/panels/settings_pages.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QHBoxLayout>
#include <QRadioButton>
#include <QStyle>

#include "settingspanel/uc_settings.h"
#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int swatch_characters = 10;
/// Above and below the height of a line.
constexpr int swatch_margin = 6;
/// Lists of the program's own words; they stand beside another group.
constexpr int list_characters = 26;
constexpr int altitude_characters = 4;
constexpr int pid_characters = 14;
constexpr int field_name_characters = 24;
constexpr int field_type_characters = 9;
/// What airlines, flight logs and pilots are called.
constexpr int name_digits = 40;
constexpr int code_characters = 8;
constexpr int link_gap = 14;
/// What the list without a caption is called.
constexpr const char* time_base_name = "Time Base";

/// A control's name is its caption without the colon.
QString Name_Of(std::string_view caption) {
    return To_Q(caption).remove(':');
}

/// `caption` is grey with its control and labels it.
void Bind_Words(QLabel& caption, Control& model, QWidget& control) {
    caption.setTextFormat(Qt::PlainText);
    caption.setBuddy(&control);
    caption.setToolTip(control.toolTip());
    Bind_Caption(caption, model);
}

void Add_Bound_Caption(Form_Group& group, Form_Group::Cell cell, std::string_view words,
                       Control& model, QWidget& control) {
    Bind_Words(group.Add_Caption(cell, To_Q(words)), model, control);
}

QComboBox* Make_List(Form_Group& group, Combo_Box& model, const QString& name, int characters) {
    auto* list = new QComboBox(&group);
    // A long entry makes no page wider.
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMinimumContentsLength(characters);
    Bind(*list, model, name);
    return list;
}

QComboBox* Add_List(Form_Group& group, Form_Group::Cell cell, const ucSettings::Captioned_List& row,
                    int characters) {
    const QString name = row.caption.empty() ? QString(time_base_name) : Name_Of(row.caption);
    QComboBox* list = Make_List(group, row.list, name, characters);
    list->setToolTip(To_Q(row.tooltip));
    if (!row.caption.empty())
        Add_Bound_Caption(group, cell, row.caption, row.list, *list);
    group.Add_Value(cell, *list);
    return list;
}

/// `characters` as in `Set_Characters`; 0: as wide as its place.
QLineEdit* Make_Field(QWidget& parent, const QString& name, Text_Box& model, int characters) {
    auto* edit = new QLineEdit(&parent);
    if (characters > 0)
        Set_Characters(*edit, characters);
    Bind(*edit, model, name);
    return edit;
}

QCheckBox* Make_Check(Form_Group& group, std::string_view caption, Check_Box& model) {
    auto* box = new QCheckBox(To_Q(caption), &group);
    Bind(*box, model);
    return box;
}

/// A link that is one of several with the same caption; `name` tells it from the others.
Link_Button* Make_Named_Link(QWidget& parent, Link& model, const QString& name) {
    auto* link = new Link_Button({}, &parent);
    Bind(*link, model);
    link->setAccessibleName(name);
    link->setToolTip(name);
    return link;
}

Form_Group* Lists_Group(ucSettings& settings, Form_Page& page) {
    auto* group = new Form_Group("Flight Recording", page);
    int row = 0;
    for (const ucSettings::Captioned_List& list : settings.ACARS_Lists())
        Add_List(*group, {row++, 0}, list, list_characters);
    QLineEdit* address =
        Make_Field(*group, Name_Of(ucSettings::simulator_caption), settings.txtSimulator, 0);
    address->setToolTip(To_Q(ucSettings::Simulator_Tooltip()));
    Add_Bound_Caption(*group, {row, 0}, ucSettings::simulator_caption, settings.txtSimulator,
                      *address);
    group->Add_Value({row, 0}, *address);
    group->Stretch_After(0);
    return group;
}

Form_Group* Take_Off_Group(ucSettings& settings, Form_Page& page) {
    auto* group = new Form_Group("Take Off", page);
    for (std::size_t i = 0; i < settings.optACARS.size(); ++i) {
        const Form_Group::Cell cell{static_cast<int>(i), 0};
        auto* option = new QRadioButton(To_Q(ucSettings::take_off_options[i]), group);
        Bind(*option, settings.optACARS[i]);
        if (i == 0)
            Add_Bound_Caption(*group, cell, ucSettings::take_off_caption, settings.optACARS[i],
                              *option);
        group->Add_Value(cell, *option);
    }
    QComboBox* altitude =
        Make_List(*group, settings.cboTakeOffAlt, "Take Off Altitude", altitude_characters);
    altitude->setToolTip(To_Q(ucSettings::take_off_tooltip));
    group->Add_Value({ucSettings::take_off_altitude, 1}, *altitude);
    group->Stretch_After(1);
    return group;
}

/// A field with its caption close by, among boxes to check.
QWidget* Captioned_Field(Form_Group& group, std::string_view caption, Text_Box& model, int indent) {
    auto* row = new QWidget(&group);
    auto* beside = new QHBoxLayout(row);
    beside->setContentsMargins(indent, 0, 0, 0);
    auto* words = new QLabel(To_Q(caption), row);
    QLineEdit* edit = Make_Field(*row, Name_Of(caption), model, pid_characters);
    Bind_Words(*words, model, *edit);
    beside->addWidget(words);
    beside->addWidget(edit);
    beside->addStretch(1);
    return row;
}

Form_Group* Options_Group(ucSettings& settings, Form_Page& page) {
    auto* group = new Form_Group("Options", page);
    int row = 0;
    for (std::size_t i = 0; i < settings.chkACARS.size(); ++i) {
        QCheckBox* box = Make_Check(*group, ucSettings::option_captions[i], settings.chkACARS[i]);
        group->Add_Wide_Value({row++, 0}, *box);
    }
    const QStyle& style = *group->style();
    // Below the box that asks for it.
    const int below_box = style.pixelMetric(QStyle::PM_IndicatorWidth) +
                          style.pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    group->Add_Wide_Value({row++, 0}, *Captioned_Field(*group, ucSettings::vatsim_pid_caption,
                                                       settings.txtVATSIM_PID, below_box));
    group->Add_Wide_Value({row, 0}, *Captioned_Field(*group, ucSettings::simbrief_caption,
                                                     settings.txtSimBrief_User, 0));
    group->Stretch_After(0);
    return group;
}

void Add_Heading(Form_Group& group, int pair, std::string_view words) {
    auto* heading = new QLabel(To_Q(words), &group);
    heading->setTextFormat(Qt::PlainText);
    group.Add_Value({0, pair}, *heading);
}

void Add_Field_Row(Form_Group& group, int number, ucSettings::Field_Row& field) {
    const auto name = [number](std::string_view caption) {
        // What stands behind the colon explains the caption and is no part of the name.
        return To_Q(caption).section(':', 0, 0) + ' ' + QString::number(number);
    };
    QLineEdit* field_name = Make_Field(group, name(ucSettings::field_name_caption), field.txtName,
                                       field_name_characters);
    Add_Bound_Caption(group, {number, 0}, std::to_string(number), field.txtName, *field_name);
    group.Add_Value({number, 0}, *field_name);
    group.Add_Value({number, 1},
                    *Make_List(group, field.cboType, name(ucSettings::field_type_caption),
                               field_type_characters));
    group.Add_Value({number, 2},
                    *Make_Field(group, name(ucSettings::field_list_caption), field.txtList, 0));
}

int Name_Width(const QWidget& widget) {
    return name_digits * widget.fontMetrics().horizontalAdvance('0');
}

/// Shown where there are airlines to choose from; where not, what stands below moves up.
Form_Group* Airline_Group(ucSettings& settings, Form_Page& page) {
    auto* group = new Form_Group(To_Q(settings.fraVA.Text()), page);
    int row = 0;
    for (const ucSettings::Captioned_List& list :
         {ucSettings::Captioned_List{settings.cboVA, ucSettings::airline_caption,
                                     ucSettings::airline_tooltip},
          ucSettings::Captioned_List{settings.cboLog, ucSettings::log_caption,
                                     ucSettings::log_tooltip}})
        Add_List(*group, {row++, 0}, list, 0)->setFixedWidth(Name_Width(*group));
    group->Stretch_After(0);
    Follow(*group, settings.fraVA, [group, &frame = settings.fraVA] {
        group->setVisible(frame.Visible() && frame.Enabled());
    });
    return group;
}

/// A field of the pilot's; `lookup` stands beside a code, and finds it.
void Add_Pilot_Field(Form_Group& group, int row, std::string_view caption, Text_Box& model,
                     Link* lookup) {
    auto* place = new QWidget(&group);
    auto* beside = new QHBoxLayout(place);
    beside->setContentsMargins(0, 0, 0, 0);
    beside->setSpacing(link_gap);
    const QString name = Name_Of(caption);
    QLineEdit* edit = Make_Field(*place, name, model, lookup == nullptr ? 0 : code_characters);
    beside->addWidget(edit);
    if (lookup == nullptr)
        edit->setFixedWidth(Name_Width(*edit));
    else
        beside->addWidget(
            Make_Named_Link(*place, *lookup, To_Q(lookup->Caption()) + " (" + name + ")"));
    Add_Bound_Caption(group, {row, 0}, caption, model, *edit);
    group.Add_Value({row, 0}, *place, Qt::AlignLeft);
}

Form_Group* Pilot_Group(ucSettings& settings, Form_Page& page) {
    auto* group = new Form_Group("Pilot", page);
    int row = 0;
    for (std::size_t i = 0; i < settings.txtPilot.size(); ++i, ++row) {
        const bool is_code = i >= ucSettings::iata;
        Add_Pilot_Field(*group, row, ucSettings::pilot_captions[i], settings.txtPilot[i],
                        is_code ? &settings.hypAirline[i - ucSettings::iata] : nullptr);
    }
    group->Add_Value({row, 0},
                     *Make_Check(*group, ucSettings::prefix_caption, settings.chkIATAPrefix));
    group->Stretch_After(0);
    return group;
}

}  // namespace

Form_Page* Make_Appearance_Page(ucSettings& settings, QWidget* parent) {
    auto* page = new Form_Page(parent);
    auto* group = new Form_Group("Colors", *page);
    int row = 0;
    for (std::size_t i = 0; i < settings.swColor.size(); ++i, ++row) {
        const std::string_view caption = ucSettings::color_captions[i];
        auto* patch = new QFrame(group);
        patch->setFrameStyle(QFrame::Box | QFrame::Plain);
        patch->setFixedSize(swatch_characters * patch->fontMetrics().horizontalAdvance('0'),
                            patch->fontMetrics().height() + swatch_margin);
        Bind(*patch, settings.swColor[i], Name_Of(caption));
        group->Add_Value({row, 0}, *patch);
        Link_Button* choose =
            Make_Named_Link(*group, settings.cmdColor[i], "Choose " + Name_Of(caption));
        Add_Bound_Caption(*group, {row, 0}, caption, settings.cmdColor[i], *choose);
        group->Add_Value({row, 1}, *choose);
    }
    auto* reset = new Link_Button({}, group);
    Bind(*reset, settings.cmdReset);
    group->Add_Wide_Value({row, 0}, *reset);
    group->Stretch_After(1);
    page->Rows().addWidget(group);
    page->Rows().addStretch(1);
    return page;
}

Form_Page* Make_ACARS_Settings_Page(ucSettings& settings, QWidget* parent) {
    auto* page = new Form_Page(parent);
    auto* columns = new QHBoxLayout;
    columns->setSpacing(2 * page->Rows().spacing());
    columns->addWidget(Lists_Group(settings, *page), 1, Qt::AlignTop);
    auto* right = new QVBoxLayout;
    right->setSpacing(page->Rows().spacing());
    right->addWidget(Take_Off_Group(settings, *page));
    right->addWidget(Options_Group(settings, *page));
    right->addStretch(1);
    columns->addLayout(right, 1);
    page->Rows().addLayout(columns);
    page->Rows().addStretch(1);
    return page;
}

Form_Page* Make_Flight_Log_Settings_Page(ucSettings& settings, QWidget* parent) {
    auto* page = new Form_Page(parent);
    auto* group = new Form_Group("Optional Fields", *page);
    Add_Heading(*group, 0, ucSettings::field_name_caption);
    Add_Heading(*group, 1, ucSettings::field_type_caption);
    Add_Heading(*group, 2, ucSettings::field_list_caption);
    int number = 1;
    for (ucSettings::Field_Row& field : settings.optFields)
        Add_Field_Row(*group, number++, field);
    group->Stretch_Values(2);
    page->Rows().addWidget(group);
    auto* recorded = new Form_Group("Recorded Flights", *page);
    Add_List(
        *recorded, {0, 0},
        {settings.cboRecordings, ucSettings::recordings_caption, ucSettings::recordings_tooltip},
        list_characters);
    recorded->Stretch_After(0);
    page->Rows().addWidget(recorded);
    page->Rows().addStretch(1);
    return page;
}

Form_Page* Make_Airline_Settings_Page(ucSettings& settings, QWidget* parent) {
    auto* page = new Form_Page(parent);
    Form_Group* airline = Airline_Group(settings, *page);
    Form_Group* pilot = Pilot_Group(settings, *page);
    page->Rows().addWidget(airline);
    page->Rows().addWidget(pilot);
    page->Rows().addStretch(1);
    Align_First_Captions({airline, pilot});
    return page;
}

}  // namespace norvane
