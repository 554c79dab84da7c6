// Printing from the flight log panel, up to the end of the program in the midst of it.

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QProgressDialog>
#include <QTimer>
#include <fstream>
#include <iterator>

#include "flightlog/log_world.h"
#include "ui/grid_printing.h"
#include "ui/qt_desktop.h"
#include "ui/qt_text.h"

namespace norvane {
namespace {

class Log_Printing : public test::Log_World {
  protected:
    void SetUp() override {
        std::string lines;
        for (int row = 0; row < 5000; ++row)
            lines += test::Full_Line("1/2/2008|B738|N123|PHNL|Honolulu");
        Write(log_file, lines);
        Start();
        log->field_chooser.shown.connect([this] { log->field_chooser.hypOK.Click(); });
        new Grid_Printing(*log, qt_desktop, parent);
        parent.show();
        QObject::connect(&look, &QTimer::timeout, &look, [this] { Step(); });
        look.start(20);
        // What is still open by then would be open for ever.
        QObject::connect(&too_late, &QTimer::timeout, &too_late, [this] {
            if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                hung = true;
                dialog->reject();
            }
        });
        too_late.start(10'000);
    }
    /// The pilot's part: prints to the file, out of the preview or not; then the program ends.
    void Step() {
        QWidget* const modal = QApplication::activeModalWidget();
        if (auto* preview = qobject_cast<QPrintPreviewDialog*>(modal)) {
            look.setInterval(200);
            for (QAction* action : preview->findChildren<QAction*>()) {
                if (action->text() == "Print") {
                    action->trigger();
                    return;
                }
            }
        } else if (auto* dialog = qobject_cast<QPrintDialog*>(modal); dialog && !over_preview) {
            dialog->printer()->setOutputFormat(QPrinter::PdfFormat);
            dialog->printer()->setOutputFileName(Path_To_Q(file));
            dialog->done(QDialog::Accepted);
        } else if (dialog || qobject_cast<QProgressDialog*>(modal)) {
            look.stop();
            qt_desktop.End_Dialogs();
        }
    }

    Window_Clock qt_clock;
    Qt_Desktop qt_desktop{qt_clock, 1};
    QWidget parent;
    QTimer look;
    QTimer too_late;
    bool over_preview = false;
    bool hung = false;
    const std::filesystem::path file = directory / "log.pdf";
};

TEST_F(Log_Printing, The_programs_end_ends_it) {
    log->hypACARS[ucFlightLog::print].Click();
    EXPECT_FALSE(look.isActive());
    EXPECT_FALSE(hung);
    std::ifstream pdf(file, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(pdf), {});
    std::size_t pages = 0;
    for (auto at = content.find("/Type /Page\n"); at != std::string::npos;
         at = content.find("/Type /Page\n", at + 1))
        ++pages;
    EXPECT_LT(pages, 100U) << "all pages were printed before the program could end";
}

TEST_F(Log_Printing, The_programs_end_closes_the_dialog_over_the_preview) {
    over_preview = true;
    log->hypACARS[ucFlightLog::print_preview].Click();
    EXPECT_FALSE(look.isActive());
    EXPECT_FALSE(hung);
}

}  // namespace
}  // namespace norvane
