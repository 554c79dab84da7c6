// The flight log's grid under the pilot's hands: real editors, real keys.

#include "ui/panels/flight_log_view.h"

#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>

#include "ui/panels/log_grid.h"
#include "ui/ui_world.h"
#include "ui/window/look.h"

namespace norvane::test {
namespace {

class Flight_Log_View_Test : public Program_World {
  protected:
    void SetUp() override {
        Write("logs/My Flight Log.txt",
              "1/1/2008|a||||||||||||1.5\r\n1/2/2008|b||||||||||||2.0\r\n");
        Start();
        view.emplace(Log(), *form, qt_desktop, nullptr);
        Open_View(*view);
    }

    ucFlightLog& Log() { return program->flight_log; }
    std::string Cell(std::size_t row, std::size_t column) {
        return std::string(Log().Table().Get(row, column));
    }
    Log_Grid& Grid() { return *dynamic_cast<Log_Grid*>(view->focusWidget()); }
    /// Types over a cell; the editor stays open.
    void Begin(int row, int column, const QString& text) {
        Grid().setCurrentIndex(Grid().model()->index(row, column));
        Press(Qt::Key_F2);
        Type(text);
    }
    /// The same, and takes it.
    void Enter(int row, int column, const QString& text) {
        Begin(row, column, text);
        Press(Qt::Key_Return);
    }
    [[nodiscard]] static bool Is_Editing() {
        return qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr ||
               qobject_cast<QComboBox*>(QApplication::focusWidget()) != nullptr;
    }

    std::optional<Flight_Log_View> view;
};

TEST_F(Flight_Log_View_Test, What_is_typed_reaches_the_table_once_checked) {
    Enter(0, 0, "4/23/08");
    EXPECT_EQ(Cell(0, 0), "4/23/2008");
    Enter(0, 13, "later");
    EXPECT_EQ(Cell(0, 13), "1.5");
    ASSERT_EQ(desktop.boxes.size(), 1U);
    Begin(0, 19, "smooth");
    Press(Qt::Key_Escape);
    EXPECT_EQ(Cell(0, 19), "");
    EXPECT_FALSE(Is_Editing());
}

TEST_F(Flight_Log_View_Test, A_corrected_cell_tells_what_it_was_and_another_nothing) {
    Enter(0, 19, "smooth <b>");
    EXPECT_TRUE(Log().Grid_Save());
    const auto tip = [&](int column) {
        return Grid().model()->index(0, column).data(Qt::ToolTipRole).toString();
    };
    EXPECT_TRUE(tip(19).contains("smooth &lt;b&gt; since ")) << tip(19).toStdString();
    EXPECT_EQ(tip(13), "");
}

TEST_F(Flight_Log_View_Test, The_panel_takes_or_drops_what_stands_in_an_open_editor) {
    Begin(0, 19, "smooth");
    Log().commit_edit_wanted.Emit();
    EXPECT_EQ(Cell(0, 19), "smooth");
    EXPECT_FALSE(Is_Editing());
    Begin(0, 19, "rough");
    Log().drop_edit_wanted.Emit();
    Settle();
    EXPECT_EQ(Cell(0, 19), "smooth");
    // A refused text is not lost to the pilot who is still typing it.
    Begin(1, 13, "1:3");
    Log().commit_edit_wanted.Emit();
    EXPECT_EQ(Cell(1, 13), "2.0");
    ASSERT_TRUE(Is_Editing());
}

TEST_F(Flight_Log_View_Test, The_keypads_decimal_key_deletes_a_flight_only_while_none_is_edited) {
    Begin(0, 13, "2");
    Press(Qt::Key_Period, ".", Qt::KeypadModifier);
    Type("7");
    Press(Qt::Key_Return);
    EXPECT_EQ(Cell(0, 13), "2.7");
    ASSERT_EQ(Log().Table().Row_Count(), 2U);
    Press(Qt::Key_Period, ".", Qt::KeypadModifier);
    ASSERT_EQ(Log().Table().Row_Count(), 1U);
    EXPECT_EQ(Cell(0, 0), "1/2/2008");
    // The line for a new flight is none.
    Grid().setCurrentIndex(Grid().model()->index(1, 0));
    Press(Qt::Key_Comma, ",", Qt::KeypadModifier);
    EXPECT_EQ(Log().Table().Row_Count(), 1U);
}

TEST_F(Flight_Log_View_Test, A_picked_airport_brings_its_name_and_a_typed_code_stands_alone) {
    Begin(0, 3, "");
    auto* list = qobject_cast<QComboBox*>(QApplication::focusWidget());
    ASSERT_NE(list, nullptr);
    list->setCurrentIndex(1);
    Q_EMIT list->activated(1);
    Settle();
    EXPECT_EQ(Cell(0, 3), "PHTO");
    EXPECT_EQ(Cell(0, 4), "Hilo");
    Enter(1, 3, "PHNL");
    EXPECT_EQ(Cell(1, 3), "PHNL");
    EXPECT_FALSE(Is_Editing());
    Enter(1, 8, "xxxx");
    EXPECT_EQ(Cell(1, 8), "XXXX");
    EXPECT_EQ(Cell(1, 9), "");
}

TEST_F(Flight_Log_View_Test, Typing_below_the_last_flight_adds_one_and_an_empty_text_does_not) {
    Enter(2, 2, "");
    EXPECT_EQ(Log().Table().Row_Count(), 2U);
    Begin(2, 0, "5/1/2008");
    // A flight that is logged meanwhile comes behind the row that is being typed.
    program->log_entry.Set(Log_Field::FLIGHT_DATE, "6/1/2008");
    Log().NewACARS_Entry();
    ASSERT_EQ(Log().Table().Row_Count(), 4U);
    EXPECT_EQ(Cell(2, 0), "5/1/2008");
    EXPECT_EQ(Cell(3, 0), "6/1/2008");
}

TEST_F(Flight_Log_View_Test, Keys_that_come_faster_than_they_are_taken_lose_no_cell) {
    Begin(0, 19, "smooth");
    // All of it in one burst, with no event between.
    for (const int key : {Qt::Key_Tab, Qt::Key_A, Qt::Key_Return}) {
        const QString text = key == Qt::Key_A ? QString("TR1") : QString();
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QApplication::sendEvent(QApplication::focusWidget(), &press);
        QCoreApplication::sendPostedEvents();
    }
    Settle();
    EXPECT_EQ(Cell(0, 19), "smooth");
    EXPECT_EQ(Cell(0, 20), "TR1");
}

TEST_F(Flight_Log_View_Test, Only_what_the_pilot_draws_changes_a_width) {
    QHeaderView& header = *Grid().horizontalHeader();
    std::array<int, log_column_count> before{};
    for (std::size_t i = 0; i < before.size(); ++i)
        before.at(i) = Log().Layout().columns.at(i).width_twips = 1001 + static_cast<int>(i);
    Log().Layout().columns[5].visible = false;
    Log().layout_changed.Emit();
    EXPECT_TRUE(header.isSectionHidden(5) && header.isSectionHidden(38));
    for (const int column : {0, 1})
        EXPECT_EQ(header.sectionSize(column), Twips_To_Pixels(*view, 1001 + column));
    header.resizeSection(7, 150);
    before[7] = Pixels_To_Twips(*view, 150);
    Log().Layout().columns[5].visible = true;
    Log().layout_changed.Emit();
    EXPECT_FALSE(header.isSectionHidden(5));
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_EQ(Log().Layout().columns.at(i).width_twips, before.at(i)) << i;
}

}  // namespace
}  // namespace norvane::test
