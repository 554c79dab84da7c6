// The flight log's pages, printed into PDF files.

#include "ui/log_printer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/test_world.h"
#include "ui/qt_text.h"

namespace norvane {
namespace {

class Log_Printer_Test : public test::Test_World {
  protected:
    void SetUp() override {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setPageOrientation(QPageLayout::Landscape);
        printer.setOutputFileName(Path_To_Q(file));
        for (Grid_Column& column : layout.columns)
            column = {"Caption", 1000, false, {}};
    }
    /// Pages of the file that is printed.
    int Printed(std::size_t rows) {
        table.Resize(rows);
        for (std::size_t row = 0; row < rows; ++row)
            table.Set(row, 0, "1/1/2008");
        Log_Printer pages(table, layout, "Flight Log: [A]", printer);
        EXPECT_TRUE(pages.Print(1, pages.Pages(), [](int) { return true; }));
        std::ostringstream content;
        content << std::ifstream(file, std::ios::binary).rdbuf();
        const std::string pdf = content.str();
        int count = 0;
        const std::string_view mark = "/Type /Page\n";
        for (auto at = pdf.find(mark); at != std::string::npos; at = pdf.find(mark, at + 1))
            ++count;
        EXPECT_EQ(count, pages.Pages());
        return count;
    }

    const std::filesystem::path file = directory / "log.pdf";
    QPrinter printer;
    Log_Table table;
    Grid_Layout layout{services};
};

TEST_F(Log_Printer_Test, Only_the_visible_columns_take_pages_and_a_wide_one_is_cut_to_its_page) {
    EXPECT_EQ(Printed(2), 1);
    for (const std::size_t column : {0U, 3U})
        layout.columns.at(column).visible = true;
    EXPECT_EQ(Printed(2), 1);
    layout.columns[3].width_twips = 1'000'000;
    EXPECT_EQ(Printed(2), 2);
    layout.columns[4].visible = true;
    EXPECT_EQ(Printed(2), 3);
    const int down = Printed(500) / 3;
    EXPECT_GT(down, 4);
    EXPECT_LT(down, 50);
}

TEST_F(Log_Printer_Test, A_log_that_goes_while_it_is_printed_ends_the_printing) {
    table.Resize(1000);
    layout.columns[0].visible = true;
    Log_Printer pages(table, layout, "Flight Log: [A]", printer);
    EXPECT_FALSE(pages.Print(1, pages.Pages(), [this](int page) {
        if (page == 3)
            table.Clear();
        return true;
    }));
}

}  // namespace
}  // namespace norvane
