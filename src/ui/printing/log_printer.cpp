#include "ui/printing/log_printer.h"

#include <QFontMetrics>
#include <QPageRanges>
#include <QPainter>
#include <algorithm>

#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int twips_per_inch = 1440;
/// The columns' widths are meant for small letters.
constexpr qreal letters_points = 6.5;
/// Beside a cell's text.
constexpr int gap_twips = 50;
/// More letters than the widest page takes.
constexpr std::size_t most_letters = 1000;
/// Heading, captions and page number, with a line's room below the first and above the last.
constexpr int lines_without_flights = 5;

}  // namespace

std::vector<int> Pages_To_Paint(const QPrinter& printer, int pages) {
    const bool ranged = printer.printRange() == QPrinter::PageRange;
    const QPageRanges ranges = printer.pageRanges();
    std::vector<int> wanted;
    for (int page = 1; page <= pages; ++page) {
        if (!ranged || ranges.isEmpty() || ranges.contains(page))
            wanted.push_back(page);
    }
    if (printer.outputFormat() != QPrinter::PdfFormat)
        return wanted;
    if (printer.pageOrder() == QPrinter::LastPageFirst)
        std::reverse(wanted.begin(), wanted.end());
    const auto copies = static_cast<std::size_t>(std::max(1, printer.copyCount()));
    std::vector<int> painted;
    for (std::size_t i = 0; i < copies * wanted.size(); ++i) {
        painted.push_back(printer.collateCopies() ? wanted.at(i % wanted.size())
                                                  : wanted.at(i / copies));
    }
    return painted;
}

Log_Printer::Log_Printer(const Log_Table& table, const Grid_Layout& layout, QString heading,
                         QPrinter& printer)
    : m_table(table),
      m_layout(layout),
      m_heading(std::move(heading)),
      m_printer(printer),
      m_page(printer.pageLayout().paintRectPixels(printer.resolution()).size()),
      m_gap(gap_twips * printer.resolution() / twips_per_inch),
      m_rows(table.Row_Count()) {
    m_letters.setPointSizeF(letters_points);
    m_bold = m_letters;
    m_bold.setBold(true);
    m_line = QFontMetrics(m_bold, &printer).height() + m_gap;
    const int lines = m_page.height() / m_line - lines_without_flights;
    m_lines_a_page = static_cast<std::size_t>(std::max(1, lines));
    Place_Columns(layout);
}

void Log_Printer::Place_Columns(const Grid_Layout& layout) {
    const auto dots = [&](std::size_t column) {
        const double width = static_cast<double>(layout.columns.at(column).width_twips) *
                             m_printer.resolution() / twips_per_inch;
        return static_cast<int>(std::clamp(width, 0.0, double(m_page.width())));
    };
    std::vector<Column> repeated;
    int used_by_repeated = 0;
    if (layout.columns[log_column::date].visible && 2 * dots(log_column::date) <= m_page.width()) {
        used_by_repeated = dots(log_column::date);
        repeated.push_back({log_column::date, used_by_repeated});
    }
    m_across.emplace_back();
    int used = 0;
    for (std::size_t i = 0; i < layout.columns.size(); ++i) {
        if (!layout.columns.at(i).visible)
            continue;
        const int width = std::min(dots(i), m_page.width() - used_by_repeated);
        if (used + width > m_page.width()) {
            m_across.push_back(repeated);
            used = used_by_repeated;
        }
        m_across.back().push_back({i, width});
        used += width;
    }
}

int Log_Printer::Pages() const {
    const std::size_t down = (m_rows + m_lines_a_page - 1) / m_lines_a_page;
    return static_cast<int>(std::max<std::size_t>(1, down) * m_across.size());
}

bool Log_Printer::Print(const std::vector<int>& pages, const std::function<bool(int)>& goes_on) {
    QPainter painter;
    if (!painter.begin(&m_printer))
        return false;
    int painted = 0;
    for (const int page : pages) {
        // Another log may have come meanwhile: its rows are not those that were counted.
        if (!goes_on(painted) || m_table.Row_Count() < m_rows ||
            (painted > 0 && !m_printer.newPage())) {
            m_printer.abort();
            return false;
        }
        Paint_Page(painter, page);
        ++painted;
    }
    return painter.end();
}

void Log_Printer::Paint_Page(QPainter& painter, int page) const {
    const auto place = static_cast<std::size_t>(page - 1);
    const std::vector<Column>& columns = m_across.at(place % m_across.size());
    painter.setPen(QPen(Qt::black, 0));
    painter.setFont(m_bold);
    painter.drawText(QRect(0, 0, m_page.width(), m_line), Qt::AlignCenter, m_heading);
    // Captions are as wide as their columns: bold ones would not fit.
    painter.setFont(m_letters);
    Paint_Captions(painter, columns, 2 * m_line);
    const std::size_t from = place / m_across.size() * m_lines_a_page;
    const std::size_t to = std::min(m_rows, from + m_lines_a_page);
    int top = 3 * m_line;
    for (std::size_t row = from; row < to; ++row, top += m_line)
        Paint_Row(painter, columns, row, top);
    painter.drawText(QRect(0, m_page.height() - m_line, m_page.width(), m_line), Qt::AlignCenter,
                     QString("Page %1").arg(page));
}

void Log_Printer::Paint_Captions(QPainter& painter, const std::vector<Column>& columns,
                                 int top) const {
    int left = 0;
    for (const Column& column : columns) {
        Paint_Text(painter, {left, top, column.width, m_line},
                   To_Q(m_layout.columns.at(column.index).caption));
        left += column.width;
    }
    painter.drawLine(0, top + m_line, left, top + m_line);
}

void Log_Printer::Paint_Row(QPainter& painter, const std::vector<Column>& columns, std::size_t row,
                            int top) const {
    const auto cells = m_table.Cells(row);
    int left = 0;
    for (const Column& column : columns) {
        const std::string_view text = cells.at(column.index).substr(0, most_letters);
        if (!text.empty())
            Paint_Text(painter, {left, top, column.width, m_line}, To_Q(text));
        left += column.width;
    }
}

void Log_Printer::Paint_Text(QPainter& painter, const QRect& cell, const QString& text) const {
    const QRect room = cell.adjusted(m_gap, 0, -m_gap, 0);
    if (room.width() <= 0)
        return;
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, Qt::ElideRight, room.width()));
}

}  // namespace norvane
