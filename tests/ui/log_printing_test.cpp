// Printing from the flight log panel through the desktop's dialogs, read back from the files, up to
// the end of the program in the midst of it.

#include <gmock/gmock.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QProgressDialog>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>
#include <fstream>

#include "logpanel/log_world.h"
#include "ui/pdf_text.h"
#include "ui/printing/grid_printing.h"
#include "ui/window/qt_desktop.h"
#include "ui/window/qt_text.h"

namespace norvane::test {
namespace {

class Log_Printing : public Log_World {
  protected:
    void Start_With(int rows) {
        qputenv("HOME", directory.c_str());
        std::filesystem::create_directory(directory / "Documents");
        std::string lines;
        for (int row = 0; row < rows; ++row)
            lines += Full_Line("1/2/2008|B738|N123|PHNL|Honolulu");
        Write(log_file, lines);
        Start();
        log->field_chooser.shown.Connect([this] { log->field_chooser.hypOK.Click(); });
        new Grid_Printing(*log, qt_desktop, parent);
        parent.show();
        QObject::connect(&look, &QTimer::timeout, &look, [this] { Step(); });
        // What is still open by then would be open for ever.
        QObject::connect(&too_late, &QTimer::timeout, &too_late, [this] {
            if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget())) {
                ADD_FAILURE() << From_Q(dialog->windowTitle()) << " hangs";
                look.stop();
                dialog->reject();
            }
        });
        too_late.start(20'000);
    }
    /// Chooses a command; the pilot's parts are played in the dialogs that open, one after the
    /// other.
    void Choose(ucFlightLog::Command command) {
        clock.Sleep(std::chrono::seconds(5));
        look.start(20);
        log->hypACARS[command].Click();
        look.stop();
    }
    void Step() {
        QWidget* const modal = QApplication::activeModalWidget();
        if (auto* dialog = qobject_cast<QPrintDialog*>(modal); dialog && on_dialog) {
            file = Path_From_Q(dialog->findChild<QLineEdit*>("filename")->text());
            on_dialog(*dialog);
        } else if (auto* preview = qobject_cast<QPrintPreviewDialog*>(modal);
                   preview && on_preview) {
            on_preview(*preview);
        } else if (auto* progress = qobject_cast<QProgressDialog*>(modal);
                   progress && on_progress) {
            on_progress(*progress);
        }
    }

    Window_Clock qt_clock;
    Qt_Desktop qt_desktop{qt_clock, 1};
    QWidget parent;
    QTimer look;
    QTimer too_late;
    std::function<void(QPrintDialog&)> on_dialog = [](QPrintDialog& dialog) { dialog.accept(); };
    std::function<void(QPrintPreviewDialog&)> on_preview;
    std::function<void(QProgressDialog&)> on_progress;
    /// The one that the dialog offered.
    std::filesystem::path file;
};

TEST_F(Log_Printing, A_file_gets_what_the_dialog_asks_for_and_the_next_one_all_again) {
    Start_With(150);
    Choose(ucFlightLog::print);
    EXPECT_EQ(file, directory / "Documents/Flight Log - My Flight Log - 2026-03-14 15-09-31.pdf");
    const std::string all = Pdf_Page_Numbers(file);
    EXPECT_TRUE(all.starts_with("1 2 3 4 ")) << all;
    EXPECT_NE(Pdf_Pages(file)[0].find("Flight Log: [My Flight Log]3/14/2026 15:09:31"),
              std::string::npos);
    on_dialog = [](QPrintDialog& dialog) {
        dialog.findChild<QRadioButton*>("pagesRadioButton")->setChecked(true);
        dialog.findChild<QLineEdit*>("pagesLineEdit")->setText("1,3-4");
        dialog.findChild<QSpinBox*>("copies")->setValue(2);
        dialog.findChild<QCheckBox*>("reverse")->setChecked(true);
        dialog.accept();
    };
    Choose(ucFlightLog::print);
    EXPECT_EQ(Pdf_Page_Numbers(file), "4 3 1 4 3 1 ");
    on_dialog = [](QPrintDialog& dialog) {
        EXPECT_TRUE(dialog.printer()->pageRanges().isEmpty());
        dialog.accept();
    };
    Choose(ucFlightLog::print);
    EXPECT_EQ(Pdf_Page_Numbers(file), all);
}

TEST_F(Log_Printing, What_is_cancelled_leaves_the_files_as_they_were) {
    Start_With(3000);
    on_dialog = [this](QPrintDialog& dialog) {
        std::ofstream(file) << "older";
        // Else it asks whether to write over it.
        dialog.done(QDialog::Accepted);
    };
    const std::vector<std::function<void(QProgressDialog&)>> ways{
        [](QProgressDialog& progress) {
            if (progress.value() > 5)
                progress.cancel();
        },
        // The program's end, the last of all dialogs.
        [this](QProgressDialog&) { qt_desktop.End_Dialogs(); }};
    for (const auto& way : ways) {
        on_progress = way;
        Choose(ucFlightLog::print);
        std::vector<std::filesystem::path> left;
        for (const auto& each : std::filesystem::directory_iterator(directory / "Documents")) {
            left.push_back(each.path());
            EXPECT_EQ(std::filesystem::file_size(left.back()), 5U);
        }
        EXPECT_THAT(left, testing::Contains(file));
    }
}

TEST_F(Log_Printing, The_previews_own_page_is_the_page_from_then_on) {
    Start_With(3);
    on_preview = [](QPrintPreviewDialog& preview) {
        preview.findChild<QPrintPreviewWidget*>()->setPortraitOrientation();
        preview.reject();
    };
    Choose(ucFlightLog::print_preview);
    auto orientation = QPageLayout::Landscape;
    on_dialog = [&](QPrintDialog& dialog) {
        orientation = dialog.printer()->pageLayout().orientation();
        dialog.reject();
    };
    Choose(ucFlightLog::print);
    EXPECT_EQ(orientation, QPageLayout::Portrait);
}

TEST_F(Log_Printing, The_programs_end_ends_the_printing_and_the_dialog_over_the_preview) {
    Start_With(3000);
    on_preview = [&](QPrintPreviewDialog& preview) {
        look.start(200);
        on_preview = nullptr;
        QTimer::singleShot(300, &preview, [this] {
            look.stop();
            qt_desktop.End_Dialogs();
        });
        for (QAction* action : preview.findChildren<QAction*>()) {
            if (action->text() == "Print")
                return action->trigger();
        }
        ADD_FAILURE() << "no action";
    };
    Choose(ucFlightLog::print_preview);
    EXPECT_TRUE(on_preview == nullptr);
}

}  // namespace
}  // namespace norvane::test
