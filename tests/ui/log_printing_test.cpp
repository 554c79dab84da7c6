// Printing from the flight log panel through the desktop's dialogs, and the pages themselves, read
// back from the files.

#include <gmock/gmock.h>

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
#include "ui/printing/log_printer.h"
#include "ui/ui_world.h"
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

/// The pages by themselves, printed into a PDF file.
class Log_Printer_Test : public Test_World {
  protected:
    void SetUp() override {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setPageOrientation(QPageLayout::Landscape);
        printer.setOutputFileName(Path_To_Q(file));
        for (Grid_Column& column : layout.columns)
            column = {"Caption", 1000, false, {}};
    }
    /// The pages of the file that is printed.
    std::vector<std::string> Printed(std::size_t rows) {
        table.Resize(rows);
        for (std::size_t row = 0; row < rows; ++row)
            table.Set(row, 0, "1/1/" + std::to_string(2000 + row));
        Log_Printer pages(table, layout, "Flight Log: [A]", printer);
        EXPECT_TRUE(pages.Print(Pages_To_Paint(printer, pages.Pages()), [](int) { return true; }));
        const auto read = Pdf_Pages(file);
        EXPECT_EQ(read.size(), static_cast<std::size_t>(pages.Pages()));
        return read;
    }

    const std::filesystem::path file = directory / "log.pdf";
    QPrinter printer;
    Log_Table table;
    Grid_Layout layout{services};
};

TEST_F(Log_Printer_Test, Only_the_visible_columns_take_pages_and_a_wide_one_is_cut_to_its_page) {
    EXPECT_EQ(Printed(2).size(), 1U);
    for (const std::size_t column : {0U, 3U})
        layout.columns.at(column).visible = true;
    layout.columns[3].width_twips = 1'000'000;
    EXPECT_EQ(Printed(2).size(), 1U);
    layout.columns[4].visible = true;
    EXPECT_EQ(Printed(2).size(), 2U);
    const std::size_t down = Printed(500).size() / 2;
    EXPECT_GT(down, 4U);
    EXPECT_LT(down, 50U);
}

TEST_F(Log_Printer_Test, Every_page_of_a_flight_tells_its_date) {
    for (std::size_t column = 0; column < 40; ++column)
        layout.columns.at(column).visible = true;
    layout.columns[0].caption = "Date";
    Set_Known_Look();
    const auto pages = Printed(60);
    ASSERT_GE(pages.size(), 6U);
    // Where words and rules stand; of a page in the middle, which is full.
    (void)Run_Program({"/usr/bin/pdftoppm", "-r", "40", "-f", "2", "-singlefile", "-png",
                       file.string(), (directory / "page").string()});
    const std::string words = Pdf_Words(file);
    Expect_Look("printed",
                words.substr(words.find("<doc>"), 60'000) +
                    Drawing_Text(QImage(Path_To_Q(directory / "page.png")), 3),
                1);
    for (std::size_t i = 0; i < pages.size() / 2; ++i) {
        EXPECT_NE(pages[i].find("Date"), std::string::npos) << i;
        EXPECT_NE(pages[i].find("1/1/2000"), std::string::npos) << i;
        EXPECT_EQ(pages[i].find("1/1/2059"), std::string::npos) << i;
        EXPECT_NE(pages[pages.size() / 2 + i].find("1/1/2059"), std::string::npos) << i;
    }
    // No room for it twice: it stands once.
    layout.columns[0].width_twips = 10'000;
    const auto wide = Printed(1);
    EXPECT_NE(wide[0].find("1/1/2000"), std::string::npos);
    EXPECT_EQ(wide[1].find("1/1/2000"), std::string::npos);
}

TEST_F(Log_Printer_Test, A_log_that_goes_while_it_is_printed_ends_the_printing) {
    table.Resize(1000);
    layout.columns[0].visible = true;
    Log_Printer pages(table, layout, "Flight Log: [A]", printer);
    EXPECT_FALSE(pages.Print({1, 2, 3, 4}, [this](int painted) {
        if (painted == 2)
            table.Clear();
        return true;
    }));
}

}  // namespace
}  // namespace norvane::test
