#pragma once
// The navigation frame: a bar of items at the left, a heading at the top, and one panel at a time
// in the rest. A plain model of what is shown where; the window paints it and hands it the mouse.
// Lengths are in twips, 1/1440 inch, as the frame's measures are given.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "common/controls.h"
#include "common/signal.h"

namespace norvane {

/// A panel that stands in the frame, known by its name ("ucACARS").
class Frame_Panel : public Control {
  public:
    explicit Frame_Panel(std::string_view name) : m_name(name) {}
    [[nodiscard]] const std::string& Name() const { return m_name; }

  private:
    std::string m_name;
};

struct clsAppFrameItem {
    /// Unique among the frame's items.
    std::string Key;
    /// Under the icon in the bar.
    std::string Title;
    /// In the heading while the item is active.
    std::string Description;
    /// Of the frame's pictures, from 1.
    int IconIndex = 0;
    /// None when the frame holds no panel of the name that was given.
    Frame_Panel* Control = nullptr;
};

struct Frame_Area {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

class ucAppFrame {
  public:
    static constexpr int bar_width = 1500;
    static constexpr int heading_height = 450;
    static constexpr int first_row_top = 100;
    static constexpr int row_height = 1000;

    ucAppFrame() { lblNotice.Set_Visible(false); }
    ucAppFrame(const ucAppFrame&) = delete;
    ucAppFrame& operator=(const ucAppFrame&) = delete;

    /// Puts a panel into the frame, where `AddItem` finds it; it outlives the frame.
    void Contain(Frame_Panel& panel);

    struct Item_Words {
        std::string_view key;
        std::string_view title;
        std::string_view description;
    };
    /// Adds an item for the panel named `control`, letter case ignored, and hides that panel. The
    /// first item is active at once. Raises 457 for a key that is in use.
    void AddItem(const Item_Words& words, int icon_index, std::string_view control);
    /// Shows the item's panel in place of the one shown; nothing for the item that is active.
    /// Raises 5 for a key that no item has.
    void SetActivePanel(std::string_view key);
    /// The active item's panel; null when it has none.
    [[nodiscard]] Frame_Panel* GetActivePanel() const;
    /// After each change, with the new key.
    Signal<const std::string&> ItemSelected;

    [[nodiscard]] const std::vector<clsAppFrameItem>& Items() const { return m_items; }
    /// Empty until the first item.
    [[nodiscard]] const std::string& ActiveKey() const { return m_active_key; }
    /// From 1; 0 when the pointer is on no item.
    [[nodiscard]] int Hovered() const { return m_hovered; }
    /// Colours of the bar and its texts, 0xBBGGRR.
    void Set_Colors(std::int32_t back, std::int32_t fore);
    [[nodiscard]] std::int32_t BackColor() const { return m_back; }
    [[nodiscard]] std::int32_t ForeColor() const { return m_fore; }

    /// The mouse over the bar, in the bar's twips. True while the bar keeps the mouse for itself.
    bool Bar_Mouse_Move(int x, int y);
    void Bar_Mouse_Up(int x, int y);
    void Bar_Mouse_Leave();
    /// The keyboard on the bar: one item on (+1) or back (-1), not beyond the ends.
    void Step(int items);

    /// Of a frame of that size: the bar, one item's row in the bar (from 1), the heading, the rest.
    [[nodiscard]] static Frame_Area Bar_Area(int width, int height);
    [[nodiscard]] static Frame_Area Row_Area(int position);
    [[nodiscard]] static Frame_Area Heading_Area(int width, int height);
    [[nodiscard]] static Frame_Area Panel_Area(int width, int height);

    /// The active item's description.
    Label lblHeading;
    /// Beside the heading, whichever item is active: what the pilot must not overlook. Hidden while
    /// there is nothing.
    Label lblNotice;
    void Set_Notice(std::string_view text);
    /// Items, hovered item or colours are others now.
    Signal<> changed;

  private:
    [[nodiscard]] int Item_At(int x, int y) const;
    [[nodiscard]] const clsAppFrameItem* Find(std::string_view key) const;
    void Hover(int position);

    std::vector<Frame_Panel*> m_contained;
    std::vector<clsAppFrameItem> m_items;
    std::string m_active_key;
    int m_hovered = 0;
    std::int32_t m_back = 0;
    std::int32_t m_fore = 0xFFFFFF;
};

}  // namespace norvane
