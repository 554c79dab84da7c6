// How the windows look: what stands in each, where, how wide, in which order, as golden texts.

#include <QMenuBar>

#include "common/text.h"
#include "common/version.h"
#include "ui/ui_world.h"
#include "ui/window/frame_view.h"
#include "ui/window/main_window.h"
#include "ui/window/pictures.h"
#include "ui/window/splash.h"
#include "ui/window_text.h"

namespace norvane::test {
namespace {

class Window_Look : public Program_World {
  protected:
    void SetUp() override {
        Write("bin/optfields.cfg",
              "Gate^\r\nType^Charter|Ferry\r\nSeats^\r\nCrew^\r\nDoor^\r\nFog^");
        Write("bin/airline.cfg", "Alpha|AA|AAA\r\nBeta|BB|BBB\r\n");
        Write("logs/My Flight Log.txt",
              "1/1/2008|a||||||||||||1.5\r\n1/2/2008|b||||||||||||2.0\r\n");
        Write_Airline("TEST", "1^\r\n2^\r\n3^A|B\r\n4^\r\n");
        Start();
        program->airline.Get_VA_Settings("TEST");
        window.emplace(*form, *program, qt_desktop);
        window->resize(1000, 640);
        window->show();
        window->activateWindow();
        Settle();
    }
    QWidget& Panel(int position) {
        form->frame.SetActivePanel(form->frame.Items().at(static_cast<std::size_t>(position)).Key);
        Settle();
        for (QWidget* child :
             window->centralWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            if (child->isVisible() && child->height() > 400 && child->x() > 0)
                return *child;
        }
        throw std::runtime_error("no panel");
    }
    /// The dialog that `open` brings.
    std::string Dialog(const std::function<void()>& open) {
        std::string seen;
        When_Open([&seen](QDialog& dialog) {
            seen = Window_Text(dialog);
            dialog.reject();
        });
        open();
        return seen;
    }

    Known_Look look;
    std::optional<Main_Window> window;
};

TEST_F(Window_Look, The_main_window_and_its_panels) {
    std::string menus;
    for (const QAction* action : window->menuBar()->actions()) {
        Q_EMIT action->menu()->aboutToShow();
        menus += From_Q(action->text()) + ":\n";
        for (const QAction* command : action->menu()->actions())
            menus += "  " + From_Q(command->text()) + '\n';
    }
    Expect_Look("frame", menus + Window_Text(*window));
    std::string pages;
    for (int page = 0; page < 4; ++page, program->panel.hypNext.Click())
        pages += Window_Text(Panel(0));
    Expect_Look("acars", pages);
    pages.clear();
    for (int page = 0; page < 4; ++page) {
        program->settings_panel.Choose_Tab(static_cast<ucSettings::Page>(page));
        pages += Window_Text(Panel(4));
    }
    Expect_Look("settings", pages);
    const std::string log = Window_Text(Panel(2));
    program->statistics.hypACARS[0].Click();
    Expect_Look("panels", log + Window_Text(Panel(3)) + Window_Text(Panel(1)));
}

TEST_F(Window_Look, The_dialogs) {
    Write("bin/fs9UD.wld", "1|1|5|OWN1|The pilot's own|3/14/2026\r\n");
    Write("reports/my.txt", "1|2|3|4|5\r\n");
    Panel(2);
    ucFlightLog& log = program->flight_log;
    std::vector<Report_Field> fields{{"Date", 0}, {"Aircraft Type", 1}};
    std::string seen = Dialog([this] { program->manage_logs.Show_Form(); });
    seen += Dialog([this] { program->convert_log.Show_Form(); });
    seen += Dialog([&] { (void)log.field_chooser.Get_Selections(fields); });
    seen += Dialog([&] { (void)log.log_chooser.Select_FlightLog(services, ""); });
    std::string iata;
    std::string icao;
    auto& airlines = program->settings_panel.airline_lookup;
    seen += Dialog([&] { (void)airlines.LookUp_Airline(iata, icao); });
    seen += Dialog([this] { (void)program->world_locations.Show_Form(); });
    seen += Replace_All(Dialog([this] { program->about.Show_Form(); }), version, "VERSION");
    program->airport_lookup.Show_Form();
    Settle();
    Type("ph");
    seen += Window_Text(*QApplication::activeWindow());
    program->airport_lookup.hypClose.Click();
    program->pirep_editor.Show_Form();
    Settle();
    seen += Window_Text(*QApplication::activeWindow());
    desktop.chosen_files.push_back(directory / "reports/my.txt");
    Press(Qt::Key_Return);
    Settle();
    seen += Window_Text(*QApplication::activeWindow());
    Expect_Look("dialogs", Replace_All(seen, directory.string(), "DIRECTORY"));
}

TEST_F(Window_Look, What_the_program_draws_itself) {
    Panel(0);
    QWidget& bar = Find_If<Frame_Bar>(*window, [](const Frame_Bar&) { return true; });
    (void)form->frame.Bar_Mouse_Move(300, 3000);
    const std::unique_ptr<QSplashScreen> splash = Show_Splash(services, "");
    Expect_Drawing("drawings",
                   Drawing_Text(bar.grab().toImage(), 3) +
                       Drawing_Text(splash->pixmap().toImage(), 6) +
                       Drawing_Text(Remark_Icon(Qt::white).pixmap(16, 16).toImage(), 1));
}

}  // namespace
}  // namespace norvane::test
