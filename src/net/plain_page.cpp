#include "net/plain_page.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "common/code_page.h"
#include "common/text.h"
#include "net/page_tags.h"

namespace norvane {

namespace {

/// What is laid out within a blink.
constexpr int most_elements = 1500;
constexpr int most_cells_in_row = 40;
constexpr int deepest_list = 6;
constexpr std::size_t most_formats = 32;

bool Is_Letter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool Is_Blank(std::string_view text) {
    return text.find_first_not_of(" \t\n") == std::string_view::npos;
}

/// UTF-8 without control characters; every line ends with LF.
std::string Readable(std::string_view bytes) {
    const std::string utf8 = Is_Utf8(bytes) ? std::string(bytes) : To_Utf8(bytes);
    const std::string text = Replace_All(Replace_All(utf8, cr_lf, "\n"), "\r", "\n");
    std::string kept;
    kept.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto code = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
        if (code == 0xC2 && next >= 0x80 && next < 0xA0)
            ++i;
        else if (text.compare(i, 3, "\xEF\xBB\xBF") == 0)
            i += 2;
        else if ((code >= ' ' && code != 0x7F) || text[i] == '\n' || text[i] == '\t')
            kept += text[i];
    }
    return kept;
}

/// Without the signs that markup writes as words; for what is shown as text.
std::string Without_Entities(std::string_view text) {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 5> signs{{
        {"&nbsp;", " "},
        {"&lt;", "<"},
        {"&gt;", ">"},
        {"&quot;", "\""},
        {"&amp;", "&"},
    }};
    std::string plain(text);
    for (const auto& [word, sign] : signs)
        plain = Replace_All(plain, word, sign);
    return plain;
}

using Kind = Tag_Kind;
using Tag = Page_Tag;

const Tag& Tag_Of(std::string_view name) {
    return *Find_Tag(name);
}

/// Walks through a page once and writes it anew, element by element.
class Page_Cleaner {
  public:
    explicit Page_Cleaner(std::string_view page) : m_page(page) {}
    [[nodiscard]] Plain_Page Clean();

  private:
    struct Format {
        const Tag* tag;
        std::string color;
    };

    void Walk();
    bool Take_Tag();
    void Start(const Tag& tag, std::string_view attributes);
    void Start_Table(const Tag& tag);
    void Start_Row(const Tag& tag);
    void Start_Cell(const Tag& tag);
    void End(const Tag& tag);
    void Put_Text(std::string_view text);
    void Put_Line(const Tag& tag);
    void Make_Place();
    void Open(const Tag& tag);
    void Pop();
    void Pop_To(std::size_t size);
    void Close_Block();
    void Break_Line();
    [[nodiscard]] std::size_t Innermost(Kind kind, std::string_view list = {}) const;

    static constexpr std::size_t none = std::string_view::npos;

    std::string_view m_page;
    std::size_t m_place = 0;
    std::string m_markup;
    /// What remains when the page is too much.
    std::string m_text;
    /// Tables, lists and what is in them, each within the one before; a block is the last one.
    std::vector<const Tag*> m_open;
    std::vector<Format> m_formats;
    int m_elements = 0;
    int m_cells = 0;
    int m_lists = 0;
    int m_inner_tables = 0;
    bool m_has_markup = false;
    bool m_too_much = false;
};

/// Where the tag that begins at `start` ends (its ">"); npos where it is no tag.
std::size_t End_Of_Tag(std::string_view page, std::size_t start) {
    for (std::size_t i = start + 1; i < page.size(); ++i) {
        const char c = page[i];
        if (c == '>')
            return i;
        if (c == '<')
            break;
        if ((c == '"' || c == '\'') && page[i - 1] == '=') {
            const std::size_t closing = page.find(c, i + 1);
            if (closing != std::string_view::npos)
                i = closing;
        }
    }
    return std::string_view::npos;
}

Plain_Page Page_Cleaner::Clean() {
    Walk();
    Pop_To(0);
    if (!m_has_markup)
        return {true, std::string(m_page)};
    if (m_too_much || m_elements > most_elements)
        return {true, Without_Entities(m_text)};
    return {false, std::move(m_markup)};
}

void Page_Cleaner::Walk() {
    while (m_place < m_page.size()) {
        const std::size_t text_end = std::min(m_page.find('<', m_place), m_page.size());
        Put_Text(m_page.substr(m_place, text_end - m_place));
        m_place = text_end;
        if (m_place < m_page.size() && !Take_Tag()) {
            Put_Text("<");
            ++m_place;
        }
    }
}

/// False when the "<" here begins no tag.
bool Page_Cleaner::Take_Tag() {
    static constexpr std::string_view comment = "<!--";
    static constexpr std::string_view comment_end = "-->";
    const std::string_view rest = m_page.substr(m_place);
    if (rest.starts_with(comment)) {
        const std::size_t end = rest.find(comment_end, comment.size());
        m_place = end == none ? m_page.size() : m_place + end + comment_end.size();
        return true;
    }
    const bool closing = rest.starts_with("</");
    std::size_t name_end = closing ? 2 : 1;
    const std::size_t name_start = name_end;
    while (name_end < rest.size() &&
           (Is_Letter(rest[name_end]) || (rest[name_end] >= '1' && rest[name_end] <= '6')))
        ++name_end;
    const bool declares = rest.starts_with("<!") || rest.starts_with("<?");
    const std::size_t end = End_Of_Tag(rest, 0);
    if (end == none || (name_end == name_start && !declares))
        return false;
    m_place += end + 1;
    const Tag* const tag = Find_Tag(rest.substr(name_start, name_end - name_start));
    m_has_markup = m_has_markup || tag != nullptr || Equal_No_Case(rest.substr(0, 9), "<!doctype");
    if (tag == nullptr)
        return true;
    if (closing) {
        End(*tag);
    } else if (tag->kind == Kind::hidden) {
        const std::size_t behind =
            Find_No_Case(m_page.substr(m_place), "</" + std::string(tag->name));
        m_place = behind == none ? m_page.size() : m_place + behind;
    } else {
        Start(*tag, rest.substr(name_end, end - name_end));
    }
    return true;
}

void Page_Cleaner::Start(const Tag& tag, std::string_view attributes) {
    switch (tag.kind) {
        case Kind::bold:
        case Kind::slanted:
        case Kind::lined:
        case Kind::colored:
            if (m_formats.size() < most_formats)
                m_formats.push_back({&tag, tag.kind == Kind::colored ? Color_In(attributes) : ""});
            break;
        case Kind::block:
            Close_Block();
            Make_Place();
            Open(tag);
            break;
        case Kind::line:
        case Kind::rule:
            Put_Line(tag);
            break;
        case Kind::list:
            Close_Block();
            Make_Place();
            if (m_lists < deepest_list) {
                Open(tag);
                ++m_lists;
            }
            break;
        case Kind::item:
            if (const std::size_t list = Innermost(Kind::list); list != none) {
                Pop_To(list + 1);
                Open(tag);
            } else {
                Put_Line(Tag_Of("br"));
            }
            break;
        case Kind::table:
            Start_Table(tag);
            break;
        case Kind::row:
            Start_Row(tag);
            break;
        case Kind::cell:
            Start_Cell(tag);
            break;
        case Kind::hidden:
        case Kind::passed:
            break;
    }
}

/// A table in a table becomes lines of the cell that it stands in.
void Page_Cleaner::Start_Table(const Tag& tag) {
    Close_Block();
    if (Innermost(Kind::table) != none) {
        ++m_inner_tables;
        Put_Line(Tag_Of("br"));
        return;
    }
    Make_Place();
    Open(tag);
}

void Page_Cleaner::Start_Row(const Tag& tag) {
    const std::size_t table = Innermost(Kind::table);
    if (table == none || m_inner_tables > 0) {
        Put_Line(Tag_Of("br"));
        return;
    }
    Pop_To(table + 1);
    Open(tag);
    m_cells = 0;
}

void Page_Cleaner::Start_Cell(const Tag& tag) {
    const std::size_t table = Innermost(Kind::table);
    if (table == none || m_inner_tables > 0) {
        Put_Text(" ");
        return;
    }
    if (const std::size_t row = Innermost(Kind::row); row != none) {
        Pop_To(row + 1);
    } else {
        Start_Row(Tag_Of("tr"));
    }
    m_too_much = m_too_much || ++m_cells > most_cells_in_row;
    Open(tag);
}

void Page_Cleaner::End(const Tag& tag) {
    switch (tag.kind) {
        case Kind::bold:
        case Kind::slanted:
        case Kind::lined:
        case Kind::colored: {
            const auto last = std::find_if(m_formats.rbegin(), m_formats.rend(),
                                           [&](const Format& each) { return each.tag == &tag; });
            if (last != m_formats.rend())
                m_formats.erase(std::next(last).base());
            break;
        }
        case Kind::block:
            Close_Block();
            break;
        case Kind::table:
            if (m_inner_tables > 0) {
                --m_inner_tables;
                Put_Line(Tag_Of("br"));
                break;
            }
            [[fallthrough]];
        case Kind::row:
        case Kind::cell:
        case Kind::item:
        case Kind::list:
            if (const std::size_t open = Innermost(tag.kind, tag.name);
                open != none && m_inner_tables == 0)
                Pop_To(open);
            break;
        default:
            break;
    }
}

void Page_Cleaner::Put_Text(std::string_view text) {
    if (text.empty())
        return;
    m_text += text;
    if (Is_Blank(text)) {
        m_markup += text;
        return;
    }
    Make_Place();
    std::vector<std::pair<std::string, std::string_view>> around;
    for (const Format& format : m_formats) {
        const std::string_view drawn = format.tag->drawn;
        if (format.tag->kind == Kind::colored && format.color.empty())
            continue;
        std::string start(drawn);
        if (!format.color.empty())
            start += " color=\"" + format.color + '"';
        std::erase_if(around, [&](const auto& outer) { return outer.second == drawn; });
        around.emplace_back(std::move(start), drawn);
    }
    std::string ends;
    for (const auto& [start, name] : around) {
        m_markup.append("<").append(start).append(">");
        ends.insert(0, "</" + std::string(name) + ">");
    }
    m_markup += Replace_All(Replace_All(text, "<", "&lt;"), ">", "&gt;") + ends;
    m_elements += static_cast<int>(around.size());
}

void Page_Cleaner::Put_Line(const Tag& tag) {
    if (tag.kind == Kind::rule)
        Close_Block();
    Make_Place();
    m_markup.append("<").append(tag.drawn).append(">");
    ++m_elements;
    Break_Line();
}

/// What stands in a table is in a cell, what stands in a list in an item.
void Page_Cleaner::Make_Place() {
    const Kind around = m_open.empty() ? Kind::block : m_open.back()->kind;
    if (around == Kind::table || around == Kind::row)
        Start_Cell(Tag_Of("td"));
    else if (around == Kind::list)
        Open(Tag_Of("li"));
}

void Page_Cleaner::Open(const Tag& tag) {
    if (tag.kind == Kind::cell && m_cells > 1)
        m_text += "  ";
    else
        Break_Line();
    m_open.push_back(&tag);
    m_markup.append("<").append(tag.drawn).append(">");
    ++m_elements;
}

void Page_Cleaner::Pop() {
    const Tag& tag = *m_open.back();
    m_open.pop_back();
    m_markup.append("</").append(tag.drawn).append(">");
    if (tag.kind == Kind::list)
        --m_lists;
    if (tag.kind != Kind::cell && tag.kind != Kind::row)
        Break_Line();
}

void Page_Cleaner::Pop_To(std::size_t size) {
    while (m_open.size() > size)
        Pop();
}

void Page_Cleaner::Close_Block() {
    if (!m_open.empty() && m_open.back()->kind == Kind::block)
        Pop();
}

void Page_Cleaner::Break_Line() {
    if (!m_text.empty() && m_text.back() != '\n')
        m_text += '\n';
}

/// The place of the innermost open element of this kind, of lists the one of this name if it is
/// given; a list around a table's cell is not in the cell.
std::size_t Page_Cleaner::Innermost(Kind kind, std::string_view list) const {
    const bool within_cell = kind == Kind::list || kind == Kind::item;
    for (std::size_t i = m_open.size(); i > 0; --i) {
        const Tag& open = *m_open[i - 1];
        if (open.kind == kind && (kind != Kind::list || list.empty() || open.name == list))
            return i - 1;
        if (within_cell && open.kind == Kind::cell)
            break;
    }
    return none;
}

}  // namespace

Plain_Page Clean_Page(std::string_view answer) {
    const std::string page = Readable(answer.substr(0, longest_page));
    return Page_Cleaner(page).Clean();
}

}  // namespace norvane
