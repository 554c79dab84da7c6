#include "ui/panels/stats_view.h"

#include <QHeaderView>
#include <QVBoxLayout>

#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/window/look.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int margin = 8;
/// Above and below the text of a row.
constexpr int row_margin = 3;
constexpr int time_width_twips = 1800;

QTableWidgetItem* Make_Cell(std::string_view text, Qt::Alignment alignment) {
    auto* cell = new QTableWidgetItem(To_Q(text));
    cell->setTextAlignment(alignment | Qt::AlignVCenter);
    return cell;
}

}  // namespace

Stats_View::Stats_View(ucStats& stats, frmMain& window, QWidget* parent)
    : QWidget(parent), m_stats(stats) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    auto* title = new Title_Bar(window, "Time by AC Type", this);
    for (Link& model : stats.hypACARS) {
        auto* link = new Link_Button({}, title);
        Bind(*link, model);
        title->Add(link);
    }
    title->Add_Stretch();
    rows->addWidget(title);

    auto* caption = new QLabel(this);
    caption->setContentsMargins(margin, margin, margin, margin);
    Bind(*caption, stats.tdbTimeCaption);
    rows->addWidget(caption);
    Make_Table();
    rows->addWidget(m_table, 1);

    Keep(*this, stats.totals_changed.Connect([this] { Show_Totals(); }));
    Show_Totals();
}

void Stats_View::Make_Table() {
    const int columns = static_cast<int>(ucStats::captions.size());
    m_table = new QTableWidget(0, columns, this);
    m_table->setAccessibleName("Time by aircraft type");
    for (int i = 0; i < columns; ++i) {
        const Qt::Alignment alignment = i == 0 ? Qt::AlignLeft : Qt::AlignRight;
        m_table->setHorizontalHeaderItem(
            i, Make_Cell(ucStats::captions[static_cast<std::size_t>(i)], alignment));
    }
    m_table->setColumnWidth(0, Twips_To_Pixels(*this, ucStats::type_width_twips));
    m_table->setColumnWidth(1, Twips_To_Pixels(*this, time_width_twips));
    const int row_height = fontMetrics().height() + 2 * row_margin;
    m_table->horizontalHeader()->setFixedHeight(row_height);
    m_table->verticalHeader()->setDefaultSectionSize(row_height);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->horizontalHeader()->setSectionsClickable(false);
    m_table->verticalHeader()->hide();
    m_table->setFrameShape(QFrame::NoFrame);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);
    m_table->setAlternatingRowColors(true);
    m_table->setTabKeyNavigation(false);

    m_hint = new QLabel(m_table->viewport());
    m_hint->setTextFormat(Qt::PlainText);
    m_hint->setWordWrap(true);
    m_hint->setAlignment(Qt::AlignCenter);
    m_hint->setEnabled(false);
    m_hint->setText("No times yet. \"" + To_Q(m_stats.hypACARS[0].Caption()) +
                    "\" adds up the active flight log.");
    auto* over = new QVBoxLayout(m_table->viewport());
    over->addWidget(m_hint);
}

void Stats_View::Show_Totals() {
    const std::vector<ucStats::Type_Total>& totals = m_stats.Totals();
    m_table->clearContents();
    m_table->setRowCount(static_cast<int>(totals.size()));
    int row = 0;
    for (const ucStats::Type_Total& total : totals) {
        m_table->setItem(row, 0, Make_Cell(total.aircraft_type, Qt::AlignLeft));
        m_table->setItem(row++, 1, Make_Cell(total.total_time, Qt::AlignRight));
    }
    m_hint->setVisible(totals.empty());
}

}  // namespace norvane
