#pragma once
// Pages of a form, as every panel draws them: groups under a heading with a thin line, captions
// left of their values, values in columns. Widgets are made in reading order, which is the order of
// the Tab key. A page that finds too little room scrolls; one with too much keeps its measures.

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QVBoxLayout>
#include <initializer_list>
#include <map>

#include "common/controls.h"

namespace norvane {

class Value_Label;

/// Around what stands on a page, in pixels.
inline constexpr int form_margin = 10;

class Form_Page : public QScrollArea {
  public:
    explicit Form_Page(QWidget* parent);

    /// What groups are made on, and the rows they are put into.
    [[nodiscard]] QWidget& Sheet() { return *m_sheet; }
    [[nodiscard]] QVBoxLayout& Rows() { return *m_rows; }

    /// `widget` is where the pilot edits `model`.
    void Note_Input(const Control& model, QWidget& widget) { m_inputs[&model] = &widget; }
    /// Null when the page has no input for `model`.
    [[nodiscard]] QWidget* Input_Of(const Control& model) const;

  protected:
    void changeEvent(QEvent* event) override;

  private:
    void Set_Grey();

    QWidget* m_sheet;
    QVBoxLayout* m_rows;
    std::map<const Control*, QWidget*> m_inputs;
};

class Form_Group : public QWidget {
  public:
    /// A caption with its value; `pair` counts such pairs from the left.
    struct Cell {
        int row = 0;
        int pair = 0;
        /// The value reaches to the end of this pair; -1: of its own.
        int last_pair = -1;
    };

    Form_Group(const QString& heading, Form_Page& page);

    /// A figure for `digits` digits; its caption is grey while it is.
    Value_Label& Add_Figure(Cell cell, const QString& caption, Label& model, int digits);
    /// A box just wide enough for `characters`; 0: as wide as there is room.
    QLineEdit& Add_Box(Cell cell, const QString& caption, Text_Box& model, int characters);
    /// A box of several lines that grows with the page. The caption is a widget of this group.
    QPlainTextEdit& Add_Text(Cell cell, QWidget& caption, const QString& name, Text_Box& model);
    QLabel& Add_Caption(Cell cell, const QString& text);
    /// The caption is another widget's.
    void Add_Value(Cell cell, QWidget& value, Qt::Alignment alignment = {});
    /// A value that covers its caption's place too.
    void Add_Wide_Value(Cell cell, QWidget& value);

    /// The room that is left over goes into the values of `pair`.
    void Stretch_Values(int pair);
    /// The room that is left over stays empty, behind `pair`.
    void Stretch_After(int pair);
    [[nodiscard]] Form_Page& Page() { return m_page; }

  private:
    friend void Align_First_Captions(std::initializer_list<Form_Group*> groups);

    Form_Page& m_page;
    QGridLayout* m_grid;
};

/// Values of the first pair begin at the same place in all groups, which stand below each other.
void Align_First_Captions(std::initializer_list<Form_Group*> groups);
/// As wide as `characters` digits, no more and no less.
void Set_Characters(QLineEdit& edit, int characters);

}  // namespace norvane
