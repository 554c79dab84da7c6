#pragma once
// Control models: what a panel's rules know of a label, a text box, a link. Plain values with
// change notices; the window binds each to a widget, tests and the program without a window use
// them as they are. "Set_…" is the program's hand; "Enter", "Click", "Choose" are the pilot's.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/signal.h"
#include "common/text.h"

namespace norvane {

class Control {
  public:
    Control() = default;
    Control(const Control&) = delete;
    Control& operator=(const Control&) = delete;

    [[nodiscard]] bool Visible() const { return m_visible; }
    [[nodiscard]] bool Enabled() const { return m_enabled; }
    void Set_Visible(bool visible);
    void Set_Enabled(bool enabled);

    /// Value, caption, visibility or usability changed.
    Signal<> changed;

  protected:
    ~Control() = default;

  private:
    bool m_visible = true;
    bool m_enabled = true;
};

/// A caption, or a figure that the pilot cannot edit. One line.
class Label : public Control {
  public:
    explicit Label(std::string_view text = {}) : m_text(text) {}
    [[nodiscard]] const std::string& Text() const { return m_text; }
    /// "|" and line breaks are cleaned as in `Clean_Field`.
    void Set_Text(std::string_view text);

  private:
    std::string m_text;
};

class Text_Box : public Control {
  public:
    explicit Text_Box(Field_Lines lines = Field_Lines::one) : m_lines(lines) {}
    [[nodiscard]] const std::string& Text() const { return m_text; }
    [[nodiscard]] Field_Lines Lines() const { return m_lines; }
    /// True for the placeholder and the empty text.
    [[nodiscard]] bool Is_Empty() const { return Is_Empty_Field(m_text); }
    /// The program's value, cleaned as in `Clean_Field`.
    void Set_Text(std::string_view text);
    /// The pilot's text: as `Set_Text`, then `edited`. Nothing happens while the box is disabled.
    void Enter(std::string_view text);
    /// The focus leaves the box.
    void Leave() { left.Emit(); }
    /// What is odd about the text that is shown, in words; empty when nothing is. The window marks
    /// the box quietly. It goes with the text that it was said of.
    [[nodiscard]] const std::string& Remark() const { return m_remark; }
    void Set_Remark(std::string_view remark);

    /// The pilot changed the text.
    Signal<> edited;
    Signal<> left;

  private:
    Field_Lines m_lines;
    std::string m_text;
    std::string m_remark;
};

class Combo_Box : public Control {
  public:
    [[nodiscard]] const std::vector<std::string>& Entries() const { return m_entries; }
    /// The selected entry's index, -1 for none.
    [[nodiscard]] int Selected() const { return m_selected; }
    /// The selected entry, or the empty text.
    [[nodiscard]] std::string Text() const;
    void Set_Entries(std::vector<std::string> entries);
    void Clear() { Set_Entries({}); }
    /// An index outside the entries selects none.
    void Select(int index);
    /// Selects the entry equal to `text` without regard to case; none when there is none.
    void Select_Text(std::string_view text);
    /// The pilot's choice: as `Select`, then `edited`.
    void Choose(int index);

    Signal<> edited;

  private:
    std::vector<std::string> m_entries;
    int m_selected = -1;
};

/// A list whose entries the pilot picks, or types over with another text.
class Text_Combo : public Control {
  public:
    [[nodiscard]] const std::vector<std::string>& Entries() const { return m_entries; }
    [[nodiscard]] const std::string& Text() const { return m_text; }
    /// The index of the entry that the text is, -1 when it is none.
    [[nodiscard]] int Selected() const;
    /// Other entries, and no text.
    void Set_Entries(std::vector<std::string> entries);
    void Add_Entry(std::string entry);
    void Set_Text(std::string_view text);
    /// The pilot's text or choice: as `Set_Text`, then `edited`.
    void Enter(std::string_view text);

    Signal<> edited;

  private:
    std::vector<std::string> m_entries;
    std::string m_text;
};

class Check_Box : public Control {
  public:
    [[nodiscard]] bool Checked() const { return m_checked; }
    void Set_Checked(bool checked);
    /// The pilot's click: turns the box over, then `edited`.
    void Click();

    Signal<> edited;

  private:
    bool m_checked = false;
};

/// One of several choices of which one holds; their owner clears the others.
class Option_Button : public Control {
  public:
    [[nodiscard]] bool Chosen() const { return m_chosen; }
    void Set_Chosen(bool chosen);
    /// The pilot's click: the option holds, then `edited`. Nothing happens while it is disabled.
    void Click();

    Signal<> edited;

  private:
    bool m_chosen = false;
};

/// A patch of colour.
class Swatch : public Control {
  public:
    /// 0xBBGGRR.
    [[nodiscard]] std::int32_t Color() const { return m_color; }
    void Set_Color(std::int32_t color);

  private:
    std::int32_t m_color = 0;
};

/// A table of texts of which the pilot selects a row.
class Row_List : public Control {
  public:
    using Row = std::vector<std::string>;

    explicit Row_List(std::vector<std::string> captions) : m_captions(std::move(captions)) {}
    [[nodiscard]] const std::vector<std::string>& Captions() const { return m_captions; }
    /// Each as long as the captions.
    [[nodiscard]] const std::vector<Row>& Rows() const { return m_rows; }
    /// Other rows, of which none is selected. A row that is too short is filled up.
    void Set_Rows(std::vector<Row> rows);
    /// Behind the others.
    void Add_Row(Row row);
    /// The row behind it, or else the one before it, is selected then.
    void Remove_Row(std::size_t row);
    /// The selected row's index, -1 for none.
    [[nodiscard]] int Selected() const { return m_selected; }
    /// A row that does not exist selects none.
    void Select(int row);
    /// The pilot's click or key on a row: as `Select`, then `edited`.
    void Choose(int row);
    /// The pilot's double click, or Enter, on the selected row; nothing without one.
    void Activate();

    Signal<> edited;
    Signal<> activated;
    /// Rows were set, added or removed; `changed` comes with it.
    Signal<> rows_changed;

  private:
    std::vector<std::string> m_captions;
    std::vector<Row> m_rows;
    int m_selected = -1;
};

/// A command shown as a link; the window draws an enabled one navy, a disabled one grey.
class Link : public Control {
  public:
    explicit Link(std::string_view caption) : m_caption(caption) {}
    [[nodiscard]] const std::string& Caption() const { return m_caption; }
    void Set_Caption(std::string_view caption);
    /// Nothing happens while the link is disabled or hidden.
    void Click();

    Signal<> clicked;

  private:
    std::string m_caption;
};

/// An entry of a menu; "&" in the caption marks its accelerator.
class Menu_Command : public Control {
  public:
    explicit Menu_Command(std::string_view caption) : m_caption(caption) {}
    [[nodiscard]] const std::string& Caption() const { return m_caption; }
    void Choose();

    Signal<> chosen;

  private:
    std::string m_caption;
};

}  // namespace norvane
