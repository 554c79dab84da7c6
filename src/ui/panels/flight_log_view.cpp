#include "ui/panels/flight_log_view.h"

#include <QLabel>
#include <QVBoxLayout>

#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/dialogs/log_dialogs.h"
#include "ui/panels/log_grid.h"
#include "ui/printing/grid_printing.h"
#include "ui/window/look.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int margin = 8;
constexpr int line_margin = 5;

}  // namespace

Flight_Log_View::Flight_Log_View(ucFlightLog& log, frmMain& window, Qt_Desktop& desktop,
                                 QWidget* parent)
    : QWidget(parent) {
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(Make_Title(log, window));
    rows->addWidget(Make_Line(log.tdbLogCaption, "Totals"));
    auto* grid = new Log_Grid(log, this);
    rows->addWidget(grid, 1);
    // The keyboard begins where the pilot reads.
    grid->setFocus();
    QWidget* status = Make_Line(log.lblStatus, "What was kept");
    rows->addWidget(status);
    Follow(*status, log.lblStatus,
           [status, &log] { status->setVisible(!log.lblStatus.Text().empty()); });
    new Grid_Printing(log, desktop, *this);
    Draw(log.field_chooser, desktop, *this);
    Draw(log.log_chooser, desktop, *this);
}

QWidget* Flight_Log_View::Make_Title(ucFlightLog& log, frmMain& window) {
    auto* title = new Title_Bar(window, "Flight Log", this);
    for (Link& model : log.hypACARS) {
        auto* link = new Link_Button({}, title);
        Bind(*link, model);
        title->Add(link);
    }
    title->Add_Stretch();
    return title;
}

/// A line of text with its blanks as they are; a long one is cut, and told whole by its tool tip.
QWidget* Flight_Log_View::Make_Line(Label& model, const QString& name) {
    auto* line = new QLabel(this);
    line->setTextFormat(Qt::PlainText);
    line->setContentsMargins(margin, line_margin, margin, line_margin);
    line->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    line->setTextInteractionFlags(Qt::TextSelectableByMouse);
    Follow(*line, model, [line, name, &model] {
        const QString text = To_Q(model.Text());
        line->setText(text);
        line->setToolTip(Tip_Of(text));
        line->setAccessibleName(name + ": " + text);
    });
    return line;
}

}  // namespace norvane
