#include "flightlog/html_writers.h"

#include "common/file_writer.h"
#include "common/services.h"

namespace norvane {

namespace {

constexpr std::string_view row_begin = "<tr>";
constexpr std::string_view row_end = "</tr>";
constexpr std::string_view empty_text = "&nbsp;";
constexpr std::string_view bold_end = "</font></b></td>";
constexpr std::string_view value_end = "</font></td>";
constexpr std::string_view cell_end = "</td>";
constexpr std::string_view navy_label = R"(<b><font face="Arial" size="2" color="#000080">)";
constexpr std::string_view field_value = R"(<font face="Arial" size="2">&nbsp;)";
/// Over the cells of both kinds of table.
constexpr std::string_view wide_header_cell =
    R"(<td width="17%" height="19" style="border-top: 1px solid #000080" bgcolor="#000080">)";
constexpr std::string_view header_cell =
    R"(<td width="15%" height="19" style="border-top: 1px solid #000080" bgcolor="#000080">)";
constexpr std::string_view last_header_cell =
    R"(<td width="15%" height="19" style="border-right: 1px solid #000080; )"
    R"(border-top: 1px solid #000080" bgcolor="#000080">)";
constexpr std::string_view navy_block = R"(<div style="background-color: #000080">)";
// The cells of a row that closes its frame.
constexpr std::string_view bottom_left_style =
    R"( style="border-left: 1px solid #000080; border-bottom: 1px solid #000080")";
constexpr std::string_view wide_bottom_cell =
    R"(<td width="17%" height="19" style="border-bottom: 1px solid #000080">)";
constexpr std::string_view bottom_cell =
    R"(<td width="15%" height="19" style="border-bottom: 1px solid #000080">)";
constexpr std::string_view last_bottom_cell =
    R"(<td width="15%" height="19" style="border-right: 1px solid #000080; )"
    R"(border-bottom: 1px solid #000080">)";

std::string With_Colon(const std::string& label) {
    return label.empty() || label == blank ? label : HTML_Text(label) + ":";
}

std::string Or_Blank(std::string_view text) {
    return text.empty() ? std::string(empty_text) : HTML_Text(text);
}

void Bottom_Field_Row(Report_File& file, const Field_Row& row) {
    const auto& [first, second, third] = row.pairs;
    file.Line(R"(<td width="17%" height="19")", bottom_left_style, ">", With_Colon(first.label),
              cell_end);
    file.Line(wide_bottom_cell, empty_text, HTML_Text(first.value), cell_end);
    file.Line(bottom_cell, With_Colon(second.label), cell_end);
    file.Line(bottom_cell, empty_text, HTML_Text(second.value), cell_end);
    file.Line(bottom_cell, With_Colon(third.label), cell_end);
    file.Line(last_bottom_cell, HTML_Text(third.value), cell_end);
}

void Normal_Field_Row(Report_File& file, const Field_Row& row) {
    constexpr std::string_view label_cell = R"(<td width="15%" height="19" align="right">)";
    const auto& [first, second, third] = row.pairs;
    file.Line(
        R"(<td width="17%" height="19" align="right" style="border-left: 1px solid #000080">)",
        navy_label, With_Colon(first.label), bold_end);
    file.Line(R"(<td width="17%" height="19">)", field_value, HTML_Text(first.value), value_end);
    file.Line(label_cell, navy_label, With_Colon(second.label), bold_end);
    if (row.kind == Row_Kind::wide) {
        file.Line(R"(<td width="15% " height="19" colspan="3" )",
                  R"(style="border-right: 1px solid #000080">)", field_value,
                  HTML_Text(second.value), value_end);
        return;
    }
    file.Line(R"(<td width="15% " height="19">)", field_value, HTML_Text(second.value), value_end);
    file.Line(label_cell, navy_label, With_Colon(third.label), bold_end);
    file.Line(R"(<td width="15%" height="19" style="border-right: 1px solid #000080">)",
              field_value, HTML_Text(third.value), value_end);
}

}  // namespace

std::string HTML_Text(std::string_view text) {
    if (text == blank)
        return std::string(text);
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '>':
                escaped += "&gt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

Report_File::Report_File(const Services& services, std::string_view title)
    : m_path(services.program_directory / "report.html") {
    Write_File(m_path, {});
    Line("<html>");
    Line("<head>");
    Line(R"(<meta http-equiv="Content - Language" content="en - us">)");
    Line(R"(<meta http-equiv="Content-Type" content="text/html; charset=windows-1252">)");
    Line("<title>", title, "</title>");
    Line("</head>");
    Line("<body>");
}

std::filesystem::path Report_File::Finish() {
    Line("</body>");
    Line("</html>");
    Write_Waiting();
    return m_path;
}

void Report_File::Write_Waiting() {
    Append_To_File(m_path, m_waiting);
    m_waiting.clear();
}

Field_Row Spacer_Row(Row_Kind kind) {
    const HTML_Pair pair{std::string(blank), std::string(blank)};
    return {{pair, pair, pair}, kind};
}

void HTML_Heading(Report_File& file, std::string_view text) {
    file.Line(R"(<p align="center"><b><font face="Arial" size="5" color="#000080">)",
              HTML_Text(text), "</font></b></p>");
    file.Line(R"(<table border="0" cellpadding="0" cellspacing="0" )",
              R"(style="border-collapse: collapse" bordercolor="#111111" width="100%" )",
              R"(id="AutoNumber1">)");
}

void HTML_Field_Row(Report_File& file, const Field_Row& row) {
    file.Line(row_begin);
    if (row.kind == Row_Kind::bottom)
        Bottom_Field_Row(file, row);
    else
        Normal_Field_Row(file, row);
    file.Line(row_end);
}

void HTML_Stat_Row(Report_File& file, const HTML_Pair& pair, Row_Kind kind) {
    const bool bottom = kind == Row_Kind::bottom;
    file.Line(row_begin);
    if (bottom)
        file.Line(R"(<td width="17%" height="19")", bottom_left_style, R"( align="left">)");
    else
        file.Line(
            R"(<td width="17%" height="19" align="left" style="border-left: 1px solid #000080">)");
    file.Line(R"(<b><font face="Arial" size="2">)", Or_Blank(pair.label), bold_end);
    file.Line(bottom ? wide_bottom_cell : R"(<td width="17%" height="19">)", empty_text, cell_end);
    if (bottom)
        file.Line(R"(<td width="15%" height="19" style="border-bottom: 1px solid #000080" )",
                  R"(align="Right"><b>)");
    else
        file.Line(R"(<td width="15%" height="19" align="Right"><b>)");
    file.Line(R"(<font face="Arial" size="2">)", Or_Blank(pair.value), bold_end);
    if (bottom) {
        file.Line(bottom_cell, empty_text, cell_end);
        file.Line(bottom_cell, empty_text, cell_end);
        file.Line(last_bottom_cell, empty_text, cell_end);
    } else {
        file.Line(R"(<td width="15%" height="19">)", navy_label, empty_text, bold_end);
        file.Line(R"(<td width="15%" height="19">)", empty_text, cell_end);
        file.Line(R"(<td width="15%" height="19" style="border-right: 1px solid #000080">)",
                  empty_text, cell_end);
    }
    file.Line(row_end);
}

void HTML_Stat_Header(Report_File& file, const HTML_Pair& titles) {
    file.Line(row_begin);
    file.Line(R"(<td width="17%" height="19" style="border-left: 1px solid #000080; )",
              R"(border-top: 1px solid #000080" bgcolor="#000080">)");
    file.Line(navy_block, R"(<p align="left"><b><font face="Arial" size="2" color="#FFFFFF">)",
              HTML_Text(titles.label), "</font></b></div></td>");
    file.Line(wide_header_cell, empty_text, cell_end);
    file.Line(header_cell);
    file.Line(R"(<p align="right"><b><font color="#FFFFFF" face="Arial" size="2">)",
              HTML_Text(titles.value), bold_end);
    file.Line(header_cell, empty_text, cell_end);
    file.Line(last_header_cell, empty_text, cell_end);
    file.Line(row_end);
}

void HTML_Section_Header(Report_File& file, std::string_view title, int empty_cells) {
    file.Line(row_begin);
    file.Line(R"(<td width="17%" height="19" style="border-left: 1px solid #000080; )",
              R"(border-top: 1px solid #000080" bgcolor="#000080" colspan="2">)", navy_block,
              R"(<b><font face="Arial" size="2" color="#FFFFFF">)", HTML_Text(title),
              "</font></b></div></td>");
    file.Line(wide_header_cell, empty_text, cell_end);
    for (int i = 0; i < empty_cells; ++i)
        file.Line(header_cell, empty_text, cell_end);
    file.Line(last_header_cell, empty_text, cell_end);
    file.Line(row_end);
}

void HTML_Text_Box(Report_File& file, std::string_view title, std::string_view text) {
    file.Line(R"(<table border="0" cellpadding="0" cellspacing="0" )",
              R"(style="border-collapse: collapse" bordercolor="#111111" width="100%" )",
              R"(height="39">)");
    file.Line(row_begin);
    file.Line(R"(<td width="100%" bgcolor="#000080" style="border-left: 1px solid #000080; )",
              R"(border-right: 1px solid #000080; border-top: 1px solid #000080" height="17">)");
    file.Line(R"(<font face="Arial" size="2" color="#FFFFFF">)");
    file.Line("<b>", HTML_Text(title), "</b>", value_end);
    file.Line(row_end);
    file.Line(row_begin);
    file.Line(R"(<td width="100%" style="border-left: 1px solid #000080; )",
              R"(border-right: 1px solid #000080; border-bottom: 1px solid #000080" height="22">)");
    file.Line(R"(<font face="Arial" size="2">)", Or_Blank(text), value_end);
    file.Line(row_end);
    file.Line("</table>");
}

}  // namespace norvane
