// The flight log's pages, printed into PDF files.

#include "ui/printing/log_printer.h"

#include <gtest/gtest.h>

#include "support/test_world.h"
#include "ui/pdf_text.h"
#include "ui/window/qt_text.h"

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
    /// The pages of the file that is printed.
    std::vector<std::string> Printed(std::size_t rows) {
        table.Resize(rows);
        for (std::size_t row = 0; row < rows; ++row)
            table.Set(row, 0, "1/1/" + std::to_string(2000 + row));
        Log_Printer pages(table, layout, "Flight Log: [A]", printer);
        EXPECT_TRUE(pages.Print(Pages_To_Paint(printer, pages.Pages()), [](int) { return true; }));
        const auto read = test::Pdf_Pages(file);
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
    const auto pages = Printed(60);
    ASSERT_GE(pages.size(), 6U);
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
}  // namespace norvane
