#pragma once
// What the dialogs share in their look: margins, links in a row, and rows of captions with what
// they name. Widgets are made in reading order, which is the order of the Tab key.

#include <QComboBox>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>
#include <initializer_list>

#include "common/controls.h"

namespace norvane {

class Link_Button;

constexpr int dialog_margin = 12;
constexpr int dialog_link_gap = 14;

[[nodiscard]] Link_Button* Make_Link(Link& model, QWidget& parent);
/// Links side by side, from the left.
[[nodiscard]] QHBoxLayout* Link_Row(std::initializer_list<Link*> links, QWidget& parent);
/// The links that end a dialog, at the right of its last row.
[[nodiscard]] QHBoxLayout* End_Row(std::initializer_list<Link*> links, QWidget& parent);
/// The layout of a dialog whose parts stand below each other.
[[nodiscard]] QVBoxLayout* Dialog_Rows(QWidget& dialog);
/// Room for `lines` lines of `characters` digits each.
[[nodiscard]] QSize Text_Size(const QWidget& widget, int characters, int lines);

/// A dialog's rows: captions at the left, what they name at the right.
class Form_Rows {
  public:
    explicit Form_Rows(QDialog& dialog);

    void Add(const QString& caption, QWidget& value);
    /// A figure for `characters` digits.
    void Add_Figure(const QString& caption, Label& model, int characters);
    /// A list with room for `characters` digits; a long name among the entries makes no dialog
    /// wider.
    QComboBox* Add_List(const QString& caption, Text_Combo& model, int characters);
    Link_Button* Add_Link(Link& model);
    void Add_End(std::initializer_list<Link*> links);

  private:
    QDialog& m_dialog;
    QVBoxLayout* m_rows;
    QGridLayout* m_grid;
    int m_count = 0;
};

}  // namespace norvane
