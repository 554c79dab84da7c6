#include "ui/settings_view.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QStackedWidget>
#include <optional>
#include <string>
#include <vector>

#include "app/frm_main.h"
#include "app/program.h"
#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"
#include "support/test_world.h"
#include "ui/qt_text.h"

namespace norvane {
namespace {

using Names = std::vector<std::string>;

/// The panel as wide and high as the window leaves it when it opens, for a pilot with two airlines.
class Settings_View_Test : public test::Test_World {
  protected:
    static constexpr QSize opening_size{920, 420};

    void SetUp() override {
        Write("bin/fs9.wld", "40.0|-73.0|10|KAAA|Alpha Field\r\n");
        Write("bin/url.cfg", "[NOAA]\r\n[ADDS]\r\n");
        Write("logs/My Trips.txt", "");
        Write("logs/My Flight Log.txt", "");
        for (const char* airline : {"VA_NORTH", "VA_NORTH WEST"}) {
            Write(std::string(airline) + "/server.cfg", "www.example.org\r\n/pirep\r\n\r\n");
            Write(std::string(airline) + "/pirep.cfg", "");
        }
        program.emplace(services, transport);
        Take_Errors();
        window.emplace(*program);
        // A slow machine is no slow typist.
        QApplication::setKeyboardInputInterval(60000);
        Open();
    }
    void Open() {
        view.emplace(Settings(), *window, nullptr);
        view->resize(opening_size);
        view->show();
        view->activateWindow();
        QApplication::processEvents();
    }

    static void Press(int key, const QString& text = {},
                      Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, modifiers, text);
            QApplication::sendEvent(QApplication::focusWidget(), &event);
        }
        QApplication::processEvents();
    }
    static void Type(const QString& letters) {
        for (const QChar letter : letters)
            Press(letter.toUpper().unicode(), letter);
    }
    static std::string Name(const QWidget& widget) {
        const auto* button = qobject_cast<const QAbstractButton*>(&widget);
        const QString name = widget.accessibleName();
        return (name.isEmpty() && button != nullptr ? button->text() : name).toStdString();
    }
    /// What the Tab key passes from the focus until it is there again.
    static Names Tab_Round() {
        Names names;
        const QWidget* first = QApplication::focusWidget();
        do {
            names.push_back(Name(*QApplication::focusWidget()));
            Press(Qt::Key_Tab);
        } while (QApplication::focusWidget() != first && names.size() < 50);
        return names;
    }
    void Tab_To(const std::string& name) {
        for (int i = 0; i < 50 && Name(*QApplication::focusWidget()) != name; ++i)
            Press(Qt::Key_Tab);
        ASSERT_EQ(Name(*QApplication::focusWidget()), name);
    }
    template <class Widget>
    [[nodiscard]] Widget& Find(const std::string& name) {
        for (Widget* widget : view->findChildren<Widget*>()) {
            if (Name(*widget) == name)
                return *widget;
        }
        throw std::runtime_error("no " + name);
    }
    [[nodiscard]] QLabel& Caption(const QString& words) {
        for (QLabel* label : view->findChildren<QLabel*>()) {
            if (label->text() == words)
                return *label;
        }
        throw std::runtime_error("no caption");
    }
    ucSettings& Settings() { return program->settings_panel; }

    Offset_Area area;
    In_Process_Transport transport{area};
    std::optional<Program> program;
    std::optional<frmMain> window;
    std::optional<Settings_View> view;
};

TEST_F(Settings_View_Test, Tab_reaches_every_control_of_a_page_by_its_name_and_no_page_scrolls) {
    const Names behind{"Save", "Cancel", "Pages of the settings"};
    const auto expect = [&behind](Names names) {
        names.insert(names.end(), behind.begin(), behind.end());
        EXPECT_EQ(Tab_Round(), names);
        Press(Qt::Key_Tab, "\t", Qt::ControlModifier);
    };
    expect({"Choose Link Bar Background Color", "Choose Menu Bar Background Color",
            "Choose Menu Bar Caption Color", "Reset Default Colors:"});
    EXPECT_EQ(Settings().Shown_Page(), ucSettings::acars);
    Settings().optACARS[ucSettings::take_off_altitude].Click();
    if (!Settings().chkACARS[ucSettings::vatsim].Checked())
        Settings().chkACARS[ucSettings::vatsim].Click();
    Settings().chkACARS[ucSettings::send_pirep].Set_Visible(true);
    Settings().chkACARS[ucSettings::send_pirep].Set_Enabled(true);
    Tab_To("Default Date");
    expect({"Default Date",
            "End of Flight",
            "Weight",
            "Fuel",
            "Time",
            "Aircraft Type",
            "Record Arrival",
            "Touch and Go",
            "Report Weather From",
            "Time Base",
            "Simulator Address",
            "Specitfy Take Off Altitude",
            "Take Off Altitude",
            "Auto Log Flight",
            "Save ACARS Message Log",
            "Send Time and Position Reports to FS",
            "Save PIREPs",
            "Auto Send PIREPs to Airline",
            "Retrieve VATSIM Flight Information",
            "VATSIM PID"});
    Names fields;
    for (int i = 1; i <= 5; ++i) {
        Settings().optFields[static_cast<std::size_t>(i) - 1].cboType.Choose(1);
        for (const char* name : {"Field Name ", "Field Type ", "Field List "})
            fields.push_back(name + std::to_string(i));
    }
    Tab_To("Field Name 1");
    expect(fields);
    Tab_To("Virtual Airline");
    Settings().txtPilot[ucSettings::iata].Enter("NV");
    expect({"Virtual Airline", "Default Log", "Pilot Name", "Pilot Email", "Pilot ID", "IATA",
            "Airline (IATA)", "ICAO", "Airline (ICAO)", "Display Flight Number with IATA Prefix"});
    for (const QScrollArea* page : view->findChildren<QScrollArea*>()) {
        const QSize least = page->widget()->minimumSizeHint();
        const QSize room = view->findChild<QStackedWidget*>()->size();
        EXPECT_LE(least.width(), room.width());
        EXPECT_LE(least.height(), room.height());
    }
}

TEST_F(Settings_View_Test, A_page_is_changed_and_saved_with_the_keyboard_alone) {
    Tab_To("Pages of the settings");
    Press(Qt::Key_Right);
    ASSERT_EQ(Settings().Shown_Page(), ucSettings::acars);
    Tab_To("End of Flight");
    // Of entries that begin alike, the one that all letters lead to; a blank among them is one.
    Type("parking brake a");
    EXPECT_EQ(Settings().cboEOF.Selected(), 2);
    Type("x");
    Tab_To("Report Weather From");
    Type("ad");
    Tab_To("Use FS On Ground Flag");
    EXPECT_FALSE(Find<QComboBox>("Take Off Altitude").isEnabled());
    Press(Qt::Key_Down);
    EXPECT_TRUE(Settings().optACARS[ucSettings::take_off_altitude].Chosen());
    EXPECT_FALSE(Settings().optACARS[ucSettings::on_ground_flag].Chosen());
    Tab_To("Take Off Altitude");
    Type("35");
    Tab_To("Retrieve VATSIM Flight Information");
    EXPECT_FALSE(Caption("VATSIM PID:").isEnabled());
    Press(Qt::Key_Space, " ");
    EXPECT_TRUE(Caption("VATSIM PID:").isEnabled());
    Tab_To("VATSIM PID");
    Type("812345");
    Tab_To("Save");
    Press(Qt::Key_Return);
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(program->settings.ACARS_EOF(), 2);
    EXPECT_EQ(program->settings.WX_URL(), "ADDS");
    EXPECT_EQ(program->settings.ACARS_TakeOff_Alt(), 35);
    EXPECT_EQ(program->settings.VATSIM_PID(), "812345");

    Tab_To("End of Flight");
    Type("e");
    EXPECT_EQ(Find<QComboBox>("End of Flight").currentText(), "Engine Shutdown");
    Tab_To("Cancel");
    Press(Qt::Key_Space, " ");
    EXPECT_EQ(Find<QComboBox>("End of Flight").currentIndex(), 2);
}

TEST_F(Settings_View_Test, Lists_that_are_filled_anew_below_the_keyboard_choose_nothing) {
    Settings().Choose_Tab(ucSettings::virtual_airline);
    const std::string saved = program->settings.Virtual_Airline();
    Tab_To("Virtual Airline");
    Type("north w");
    EXPECT_EQ(Settings().cboVA.Text(), "NORTH WEST");
    Write("VA_EAST/server.cfg", "");
    Settings().Refresh_VA_Information();
    EXPECT_EQ(program->settings.Virtual_Airline(), saved);
    EXPECT_EQ(Find<QComboBox>("Virtual Airline").currentText(), "NORTH WEST");
    EXPECT_EQ(Find<QComboBox>("Virtual Airline").count(), 3);
}

TEST_F(Settings_View_Test, A_flight_locks_what_is_seen_and_a_single_airline_has_no_frame) {
    Settings().ACARS_STATE(false);
    EXPECT_TRUE(Caption("Locked while a flight is tracked or stored").isVisible());
    Settings().Choose_Tab(ucSettings::acars);
    for (const char* caption : {"Default Date:", "Record Take Off:", "Report Weather From:"})
        EXPECT_FALSE(Caption(caption).isEnabled()) << caption;
    Settings().Choose_Tab(ucSettings::virtual_airline);
    QLabel& airline = Caption("Virtual Airline:");
    EXPECT_TRUE(airline.isVisible());
    EXPECT_FALSE(airline.isEnabled());
    EXPECT_FALSE(Caption("Pilot Name:").isEnabled());
    Settings().ACARS_STATE(true);
    EXPECT_TRUE(airline.isEnabled());
    EXPECT_TRUE(Caption("Pilot Name:").isEnabled());

    const int pilot_place = Caption("Pilot Name:").mapTo(&*view, QPoint()).y();
    std::filesystem::remove_all(directory / "VA_NORTH");
    Settings().Refresh_VA_Information();
    QApplication::processEvents();
    EXPECT_FALSE(airline.isVisible());
    EXPECT_LT(Caption("Pilot Name:").mapTo(&*view, QPoint()).y(), pilot_place);

    Settings().Choose_Tab(ucSettings::appearance);
    Settings().swColor[ucSettings::menu_bar_back].Set_Color(0x302010);
    const auto& patch = Find<QFrame>("Menu Bar Background Color: #102030");
    const QPoint middle = patch.mapTo(&*view, patch.rect().center());
    EXPECT_EQ(view->grab().toImage().pixelColor(middle), QColor(0x10, 0x20, 0x30));
}

}  // namespace
}  // namespace norvane
