#include "app/uc_app_frame.h"

#include <algorithm>
#include <string>

#include "common/run_error.h"
#include "common/text.h"

namespace norvane {

namespace {

/// The run-time error for a key that a collection holds already.
constexpr int key_in_use = 457;

}  // namespace

void ucAppFrame::Contain(Frame_Panel& panel) {
    m_contained.push_back(&panel);
}

void ucAppFrame::AddItem(const Item_Words& words, int icon_index, std::string_view control) {
    if (Find(words.key) != nullptr)
        throw Run_Error(key_in_use, "The frame has an item " + std::string(words.key));
    const auto panel = std::find_if(
        m_contained.begin(), m_contained.end(),
        [&](const Frame_Panel* contained) { return Equal_No_Case(contained->Name(), control); });
    clsAppFrameItem item{std::string(words.key), std::string(words.title),
                         std::string(words.description), icon_index, nullptr};
    if (panel != m_contained.end()) {
        item.Control = *panel;
        item.Control->Set_Visible(false);
    }
    m_items.push_back(std::move(item));
    if (m_active_key.empty())
        SetActivePanel(words.key);
    else
        changed.Emit();
}

void ucAppFrame::SetActivePanel(std::string_view key) {
    if (key == m_active_key)
        return;
    const clsAppFrameItem* found = Find(key);
    if (found == nullptr)
        throw Run_Error(error_number::invalid_call, "The frame has no item " + std::string(key));
    // Copied, as listeners may add items or turn to another one.
    const clsAppFrameItem item = *found;
    if (Frame_Panel* shown = GetActivePanel())
        shown->Set_Visible(false);
    m_active_key = item.Key;
    lblHeading.Set_Text(item.Description);
    // The panel gets its place while it is still hidden.
    changed.Emit();
    ItemSelected.Emit(item.Key);
    if (item.Control != nullptr && m_active_key == item.Key)
        item.Control->Set_Visible(true);
}

Frame_Panel* ucAppFrame::GetActivePanel() const {
    const clsAppFrameItem* active = Find(m_active_key);
    return active == nullptr ? nullptr : active->Control;
}

void ucAppFrame::Set_Colors(std::int32_t back, std::int32_t fore) {
    if (back == m_back && fore == m_fore)
        return;
    m_back = back;
    m_fore = fore;
    changed.Emit();
}

void ucAppFrame::Set_Notice(std::string_view text) {
    lblNotice.Set_Text(text);
    lblNotice.Set_Visible(!text.empty());
}

bool ucAppFrame::Bar_Mouse_Move(int x, int y) {
    Hover(Item_At(x, y));
    return m_hovered != 0;
}

void ucAppFrame::Bar_Mouse_Up(int x, int y) {
    Hover(Item_At(x, y));
    if (m_hovered != 0)
        SetActivePanel(std::string(m_items[static_cast<std::size_t>(m_hovered - 1)].Key));
}

void ucAppFrame::Bar_Mouse_Leave() {
    Hover(0);
}

void ucAppFrame::Step(int items) {
    const clsAppFrameItem* active = Find(m_active_key);
    if (active == nullptr)
        return;
    const auto last = static_cast<std::ptrdiff_t>(m_items.size()) - 1;
    const auto next = std::clamp<std::ptrdiff_t>(active - m_items.data() + items, 0, last);
    SetActivePanel(std::string(m_items[static_cast<std::size_t>(next)].Key));
}

Frame_Area ucAppFrame::Bar_Area(int /*width*/, int height) {
    return {0, 0, bar_width, height};
}

Frame_Area ucAppFrame::Row_Area(int position) {
    return {0, first_row_top + (position - 1) * row_height, bar_width, row_height};
}

Frame_Area ucAppFrame::Heading_Area(int width, int /*height*/) {
    return {bar_width, 0, std::max(0, width - bar_width), heading_height};
}

Frame_Area ucAppFrame::Panel_Area(int width, int height) {
    return {bar_width, heading_height, std::max(0, width - bar_width),
            std::max(0, height - heading_height)};
}

/// The position of the item whose row holds the point, from 1; 0 for none.
int ucAppFrame::Item_At(int x, int y) const {
    if (x < 0 || x >= bar_width || y < first_row_top)
        return 0;
    const int position = (y - first_row_top) / row_height + 1;
    return position <= static_cast<int>(m_items.size()) ? position : 0;
}

const clsAppFrameItem* ucAppFrame::Find(std::string_view key) const {
    const auto item = std::find_if(m_items.begin(), m_items.end(),
                                   [&](const clsAppFrameItem& one) { return one.Key == key; });
    return item == m_items.end() ? nullptr : &*item;
}

void ucAppFrame::Hover(int position) {
    if (position == m_hovered)
        return;
    m_hovered = position;
    changed.Emit();
}

}  // namespace norvane
