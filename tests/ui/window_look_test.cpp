// How the windows look: what stands in each, where, how wide, in which order, as golden texts.

#include <QAbstractItemView>
#include <QMenuBar>

#include "common/text.h"
#include "common/version.h"
#include "ui/ui_world.h"
#include "ui/window/frame_view.h"
#include "ui/window/main_window.h"
#include "ui/window/pictures.h"
#include "ui/window/splash.h"

namespace norvane::test {
namespace {

class Window_Look : public Program_World {
  protected:
    void SetUp() override {
        Set_Known_Look();
        Write("bin/optfields.cfg", "Gate^\r\nType^A|B\r\n3^\r\n4^\r\n5^\r\n6^");
        Write("bin/airline.cfg", "Alpha|AA|AAA\r\n");
        Write("logs/My Flight Log.txt", "1/1/2008|a||||||||||||1.5\r\n");
        Write_Airline("TEST", "1^\r\n2^A|B\r\n");
        Start();
        program->airline.Get_VA_Settings("TEST");
        Open();
    }
    void Open() {
        window.emplace(*form, *program, qt_desktop);
        Open_View(*window);
        // It fits the screen, so that it keeps its size however long the test takes.
        window->resize(780, 600);
        Settle();
    }
    void TearDown() override {
        Set_Known_Look();
        Program_World::TearDown();
    }
    QWidget& Panel(int position) {
        form->frame.SetActivePanel(form->frame.Items().at(static_cast<std::size_t>(position)).Key);
        Settle();
        return Find_If<QWidget>(*window->centralWidget(), [](const QWidget& part) {
            return part.isVisible() && part.height() > 400 && part.x() > 0;
        });
    }
    /// The dialog that `open` brings, which is left again.
    void See(const std::function<void()>& open) {
        When_Open([this](QDialog& dialog) {
            seen += Window_Text(dialog);
            dialog.reject();
        });
        open();
    }
    void See_Active() {
        Settle();
        seen += Window_Text(*QApplication::activeWindow());
    }

    std::string seen;
    std::optional<Main_Window> window;
};

TEST_F(Window_Look, The_main_window_and_its_panels) {
    for (const QAction* action : window->menuBar()->actions()) {
        Q_EMIT action->menu()->aboutToShow();
        for (const QAction* command : action->menu()->actions())
            seen += From_Q(action->text() + ": " + command->text()) + '\n';
    }
    Expect_Look("frame", seen + Window_Text(*window));
    std::string pages;
    for (int page = 0; page < 4; ++page, program->panel.hypNext.Click()) {
        program->settings_panel.Choose_Tab(static_cast<ucSettings::Page>(page));
        pages += Window_Text(Panel(0));
        pages += Window_Text(Panel(4));
    }
    Expect_Look("pages", pages);
    std::string panels = Window_Text(Panel(2));
    QWidget* grid = QApplication::focusWidget();
    auto& cells = dynamic_cast<QAbstractItemView&>(*grid);
    // The editor of each column, as it opens and with a letter typed.
    for (int column = 0; column < cells.model()->columnCount(); ++column) {
        cells.setCurrentIndex(cells.model()->index(0, column));
        Press(Qt::Key_F2);
        QWidget* editor = QApplication::focusWidget();
        panels += editor == grid ? "" : Window_Text(*editor);
        Type("x");
        panels += editor == grid ? "" : Window_Text(*editor);
        Press(Qt::Key_Escape);
    }
    panels += Window_Text(Panel(2));
    program->statistics.hypACARS[0].Click();
    Expect_Look("panels", panels + Window_Text(Panel(3)) + Window_Text(Panel(1)));
}

TEST_F(Window_Look, Of_a_flight_in_the_dark_with_large_letters) {
    QFont font = QApplication::font();
    font.setPointSize(18);
    QApplication::setFont(font);
    QApplication::setPalette(QPalette(QColor(40, 40, 40)));
    Open();
    area.Set(Variable::engine_count, 2);
    program->panel.hypOn.Click();
    for (Text_Box* box : {&program->panel.txtComments, &program->panel.txtFlightLevel,
                          &program->panel.txtAircraftType})
        box->Enter("a text that is much longer than the box that it stands in, and that goes on");
    for (int page = 0; page < 4; ++page, program->panel.hypNext.Click()) {
        program->settings_panel.Choose_Tab(static_cast<ucSettings::Page>(page));
        seen += Window_Text(Panel(0)) + Window_Text(Panel(4));
    }
    Expect_Look("flight", seen);
    Take_Errors();
}

TEST_F(Window_Look, The_dialogs) {
    Panel(2);
    std::vector<Report_Field> fields{{"Date", 0}, {"Aircraft Type", 1}};
    std::string code;
    See([this] { program->manage_logs.Show_Form(); });
    See([this] { program->convert_log.Show_Form(); });
    See([&] { (void)program->flight_log.field_chooser.Get_Selections(fields); });
    See([&] { (void)program->flight_log.log_chooser.Select_FlightLog(services, ""); });
    See([&] { (void)program->settings_panel.airline_lookup.LookUp_Airline(code, code); });
    See([this] { (void)program->world_locations.Show_Form(); });
    See([this] { program->about.Show_Form(); });
    program->airport_lookup.Show_Form();
    See_Active();
    program->pirep_editor.Show_Form();
    See_Active();
    desktop.chosen_files.push_back(Write("reports/my.txt", "1|2|3|4|5\r\n"));
    Press(Qt::Key_Return);
    See_Active();
    seen = Replace_All(Replace_All(seen, version, "VERSION"), directory.string(), "DIRECTORY");
    Expect_Look("dialogs", seen);
}

TEST_F(Window_Look, What_the_program_draws_itself) {
    Panel(0);
    QWidget& bar = Find_If<Frame_Bar>(*window, [](const Frame_Bar&) { return true; });
    (void)form->frame.Bar_Mouse_Move(300, 3000);
    const std::unique_ptr<QSplashScreen> splash = Show_Splash(services, "");
    Expect_Look("drawings",
                Drawing_Text(bar.grab().toImage(), 3) +
                    Drawing_Text(splash->pixmap().toImage(), 6) +
                    Drawing_Text(Remark_Icon(Qt::white).pixmap(16, 16).toImage(), 1),
                1);
}

}  // namespace
}  // namespace norvane::test
