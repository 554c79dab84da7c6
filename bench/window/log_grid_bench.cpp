// The flight log panel with 100,000 flights on the screen: the first painted frame, the end of the
// log, another order, a figure typed in. Each time ends when the frame is painted.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <memory>

#include "app/frm_main.h"
#include "big_log.h"
#include "common/file_writer.h"
#include "simlink/in_process_transport.h"
#include "simlink/offset_area.h"
#include "ui/panels/flight_log_view.h"
#include "ui/panels/log_grid.h"
#include "ui/window/qt_desktop.h"

namespace norvane {
namespace {

constexpr QSize window_size(1000, 600);

/// A program on the big log.
struct Big_Program {
    Big_Program() {
        Big_Log& log = Big_Log::The_One();
        std::filesystem::create_directories(log.services.program_directory / "bin");
        Write_File(log.services.program_directory / "bin" / "ac.cfg", "B738");
        program = std::make_unique<Program>(log.services, transport);
        window = std::make_unique<frmMain>(*program);
    }
    void Show() {
        view = std::make_unique<Flight_Log_View>(program->flight_log, *window, desktop, nullptr);
        view->resize(window_size);
        view->show();
        QApplication::processEvents();
        view->grab();
    }
    [[nodiscard]] Log_Grid& Grid() const {
        for (QTableView* grid : view->findChildren<QTableView*>()) {
            if (auto* log = dynamic_cast<Log_Grid*>(grid))
                return *log;
        }
        throw std::runtime_error("no grid");
    }

    Offset_Area area;
    In_Process_Transport transport{area};
    System_Clock clock;
    Qt_Desktop desktop{clock, 1};
    std::unique_ptr<Program> program;
    std::unique_ptr<frmMain> window;
    std::unique_ptr<Flight_Log_View> view;
};

void First_Frame_Of_A_Loaded_Log(benchmark::State& state) {
    Big_Program big;
    for ([[maybe_unused]] auto iteration : state)
        big.Show();
}
BENCHMARK(First_Frame_Of_A_Loaded_Log)->Unit(benchmark::kMillisecond);

void Program_Start_To_First_Frame(benchmark::State& state) {
    for ([[maybe_unused]] auto iteration : state)
        Big_Program().Show();
}
BENCHMARK(Program_Start_To_First_Frame)->Unit(benchmark::kMillisecond);

template <class Work>
void Until_Painted(benchmark::State& state, const Work& work) {
    Big_Program big;
    big.Show();
    int round = 0;
    for ([[maybe_unused]] auto iteration : state) {
        work(big, round++);
        QApplication::processEvents();
        big.view->grab();
    }
}

void Scroll_To_The_Other_End(benchmark::State& state) {
    Until_Painted(state, [](Big_Program& big, int round) {
        QScrollBar& bar = *big.Grid().verticalScrollBar();
        bar.setValue(round % 2 == 0 ? bar.maximum() : bar.minimum());
    });
}
BENCHMARK(Scroll_To_The_Other_End)->Unit(benchmark::kMillisecond);

void Sort_By_A_Click(benchmark::State& state) {
    Until_Painted(state, [](Big_Program& big, int round) {
        Q_EMIT big.Grid().horizontalHeader()->sectionClicked(round % 2 == 0 ? 1 : 0);
    });
}
BENCHMARK(Sort_By_A_Click)->Unit(benchmark::kMillisecond);

void Type_A_Block_Time(benchmark::State& state) {
    Until_Painted(state, [](Big_Program& big, int round) {
        ucFlightLog& log = big.program->flight_log;
        log.Begin_Edit(7, log_column::block_time);
        log.Commit_Edit(7, log_column::block_time, round % 2 == 0 ? "1.5" : "2.5");
    });
}
BENCHMARK(Type_A_Block_Time)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace norvane
