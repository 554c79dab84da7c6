// The log in memory: cells, sorting, totals, and what becomes of a typed text.

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "common/run_error.h"
#include "common/text.h"
#include "flightlog/log_reading.h"
#include "flightlog/log_table.h"

namespace norvane {
namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string Written(const Log_Table& table) {
    std::string file;
    For_Each_Piece(table, [&](std::string_view piece) { file += piece; });
    return file;
}

Rows Rows_Of(const Log_Table& table) {
    Rows rows;
    for (std::size_t row = 0; row < table.Row_Count(); ++row) {
        rows.emplace_back();
        for (std::size_t column = 0; column < log_column_count; ++column)
            rows.back().emplace_back(table.Get(row, column));
    }
    return rows;
}

std::string Column_Of(const Log_Table& table, std::size_t column) {
    std::string texts;
    for (std::size_t row = 0; row < table.Row_Count(); ++row)
        texts += std::string(table.Get(row, column)) + ' ';
    return texts;
}

/// The table against the simplest thing that could hold the same cells.
TEST(Log_Table_Test, Cells_stay_where_they_are_through_edits_deletions_and_growth) {
    std::mt19937 random(7);
    Log_Table table;
    Rows model;
    for (int step = 0; step < 6000; ++step) {
        const auto choice = random() % 20;
        if (choice < 2 || model.empty()) {
            model.emplace_back(log_column_count)[0] = "d";
            table.Resize(model.size());
            table.Set(model.size() - 1, 0, "d");
        } else if (choice == 2) {
            const auto row = random() % model.size();
            model.erase(model.begin() + static_cast<std::ptrdiff_t>(row));
            table.Delete_Row(row);
        } else {
            const auto row = random() % model.size();
            const auto column = 1 + random() % (log_column_count - 1);
            // Long texts, so that the room of old ones is given back several times.
            model[row][column] = std::string(random() % 3000, static_cast<char>('a' + step % 26));
            table.Set(row, column, model[row][column]);
        }
    }
    EXPECT_EQ(Rows_Of(table), model);
    const std::string file = Written(table);
    EXPECT_EQ(Rows_Of(Parse_Log(file).table), model);
    EXPECT_LT(table.Bytes_Held(), 4 * file.size() + 4'000'000);
}

TEST(Log_Table_Test, A_text_cannot_break_out_of_its_cell_nor_a_cell_out_of_the_table) {
    Log_Table table;
    table.Resize(3);
    table.Set(0, 52, "a|b\r\nc\nd");
    table.Set(1, 0, table.Get(0, 52));
    // Rows without any text are not written, but undated ones are.
    table.Set(2, 30, "x");
    table.Set(2, 30, "");
    EXPECT_EQ(Written(table),
              std::string(52, '|') + "a/b c d\r\na/b c d" + std::string(52, '|') + "\r\n");
    EXPECT_THROW((void)table.Get(3, 0), Run_Error);
    EXPECT_THROW((void)table.Get(0, 53), Run_Error);
    EXPECT_THROW(table.Set(0, 53, "x"), Run_Error);
    EXPECT_THROW(table.Delete_Row(3), Run_Error);
}

TEST(Log_Table_Test, Dates_and_types_sort_by_their_own_order_and_equals_keep_theirs) {
    Log_Table table = Parse_Log(
                          "no date|A|||||\n10/2/2008|B||||0900\n2/10/2008|C||||0900\n"
                          "2/10/2008|D||||0830\n2008-02-10|E||||0830\n13/13/2008|F\n"
                          "2/10/2008 12:00|G||||0000\n1/5/98|H\n2/10/2008|I||||\xE9\n")
                          .table;
    Sort_XArray(table, 0, "M/d/yyyy");
    EXPECT_EQ(Column_Of(table, 1), "H D E C I G B A F ");
    Sort_XArray(table, 0, "d/M/yyyy");
    EXPECT_EQ(Column_Of(table, 1), "H E B D C I G A F ");
    // Types by their code and with case.
    table = Parse_Log("1|b|1\n1|\xC9|2\n1||3\n1|B|4\n1|BB|5\n1|B|6\n").table;
    Sort_XArray(table, 1, "M/d/yyyy");
    EXPECT_EQ(Column_Of(table, 2), "3 4 6 5 1 2 ");
    EXPECT_THROW(Sort_XArray(table, 2, "M/d/yyyy"), Run_Error);
}

TEST(Log_Table_Test, Totals_sum_what_is_numeric_in_the_signs_of_the_country) {
    // Both figures of each row.
    const auto caption = [](std::string_view cells, const Regional& regional) {
        std::string log;
        for (const auto& row : Split(cells, ' '))
            log += "1|||||||||||||" + Replace_All(row, ";", "|||") + "\n";
        return Totals_Caption(Parse_Log(log).table.Totals(regional), regional);
    };
    const Regional american;
    const Regional german{"dd.MM.yyyy", ',', '.'};
    EXPECT_EQ(caption("1,234.5;1000 x;100 1:15;-", american),
              "Total Block Time: 1,234.5            Total Flight Time: 1,100.0");
    EXPECT_EQ(caption("1234,5;1,25 .5;0", german),
              "Total Block Time: 1.235,0            Total Flight Time: 1,3");
    // Decimal figures, not binary neighbours that round down after many of them.
    std::string many;
    for (int i = 0; i < 1665; ++i)
        many += "0.15;0.05 ";
    EXPECT_EQ(caption(many, american),
              "Total Block Time: 249.8            Total Flight Time: 83.3");
}

TEST(Log_Columns_Test, Typed_texts_become_dates_and_figures_or_are_refused) {
    const Regional american;
    const Regional german{"dd.MM.yyyy", ',', '.'};
    using Case = std::tuple<std::size_t, std::string_view, const Regional*, std::string_view>;
    const std::string_view no_date = "Please enter a valid date";
    const std::string_view no_number = "Please enter a numeric value";
    for (const auto& [column, typed, regional, result] :
         {Case{0, "4/23/08", &american, "4/23/2008"},
          {0, "2008-04-23 17:05", &american, "4/23/2008"},
          {0, "tomorrow", &american, no_date},
          {0, "2/30/2008", &american, no_date},
          {0, "", &american, ""},
          {13, "1.26", &american, "1.3"},
          {13, "1:15", &american, no_number},
          {16, "1,234.56", &american, "1,234.6"},
          {16, "1.25", &german, "1,3"},
          {14, "1:15", &american, "1:15"},
          {3, "kjfk", &american, "KJFK"},
          {19, "a|b\nc", &american, "a/b c"}}) {
        const Checked_Cell checked = Check_Cell(column, typed, *regional);
        EXPECT_EQ(checked.message.empty() ? checked.text : checked.message, result) << typed;
    }
}

}  // namespace
}  // namespace norvane
