#pragma once
// The elements and colours that pages of airlines' scripts are made of, and what of them is drawn.
// Used by the cleaning of such a page.

#include <string>
#include <string_view>

namespace norvane {

enum class Tag_Kind {
    bold,
    slanted,
    lined,
    colored,
    block,
    line,
    rule,
    list,
    item,
    table,
    row,
    cell,
    /// What stands in it is nothing to read.
    hidden,
    /// Known, but only what stands in it counts.
    passed,
};

struct Page_Tag {
    std::string_view name;
    Tag_Kind kind;
    /// The element that it becomes.
    std::string_view drawn = {};
};

/// In any case of letters; none for a name that is no element's.
[[nodiscard]] const Page_Tag* Find_Tag(std::string_view name);

/// The text colour in an element's attributes ("color=red", "style='color: #f00'"), as they write
/// it; empty when there is none, or none that can be read on white.
[[nodiscard]] std::string Color_In(std::string_view attributes);

}  // namespace norvane
