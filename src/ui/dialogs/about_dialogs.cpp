#include "ui/dialogs/about_dialogs.h"

#include <QLabel>
#include <memory>

#include "app/frm_about.h"
#include "settingspanel/frm_airline.h"
#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/dialogs/dialog_rows.h"
#include "ui/dialogs/modal_dialog.h"
#include "ui/dialogs/row_list_view.h"
#include "ui/window/pictures.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int icon_size = 64;
/// The product's name, next to the other texts.
constexpr double name_scale = 1.6;
constexpr int about_characters = 76;
constexpr int about_lines = 29;
constexpr int airline_characters = 60;
constexpr int airline_lines = 32;

QLabel* Make_Line(Label& model, QWidget& parent) {
    auto* line = new QLabel(&parent);
    Bind(*line, model);
    return line;
}

/// The program's icon, and beside it what it is.
QHBoxLayout* Product_Row(frmAbout& form, QWidget& parent) {
    auto* row = new QHBoxLayout;
    row->setSpacing(dialog_margin);
    auto* icon = new QLabel(&parent);
    icon->setPixmap(Program_Icon().pixmap(QSize(icon_size, icon_size), parent.devicePixelRatio()));
    row->addWidget(icon, 0, Qt::AlignTop);
    auto* lines = new QVBoxLayout;
    lines->setSpacing(2);
    QLabel* product = Make_Line(form.lblProduct, parent);
    QFont large = product->font();
    large.setBold(true);
    large.setPointSizeF(large.pointSizeF() * name_scale);
    product->setFont(large);
    lines->addWidget(product);
    lines->addWidget(Make_Line(form.lblVersion, parent));
    lines->addWidget(Make_Line(form.lblLicence, parent));
    row->addLayout(lines, 1);
    return row;
}

std::shared_ptr<Row_List> Licence_Table() {
    std::vector<Row_List::Row> rows;
    for (const Licensed_Part& part : frmAbout::Licensed_Parts()) {
        rows.push_back(
            {std::string(part.name), std::string(part.purpose), std::string(part.licence)});
    }
    auto table =
        std::make_shared<Row_List>(std::vector<std::string>{"Part", "What it is for", "Licence"});
    table->Set_Rows(std::move(rows));
    return table;
}

}  // namespace

void Draw(frmAbout& form, Qt_Desktop& desktop, QObject& owner) {
    const auto fill = [&form, table = Licence_Table()](QDialog& dialog) {
        QVBoxLayout* rows = Dialog_Rows(dialog);
        rows->addLayout(Product_Row(form, dialog));
        rows->addWidget(new Row_List_View(*table, "Licences of the program's parts", {1}, &dialog),
                        1);
        auto* end = new QHBoxLayout;
        Link_Button* close = Make_Link(form.hypClose, dialog);
        end->addStretch(1);
        end->addWidget(close);
        rows->addLayout(end);
        dialog.resize(Text_Size(dialog, about_characters, about_lines));
        close->setFocus();
    };
    Show_With(form, desktop, owner, To_Q(frmAbout::Title()), fill);
}

void Draw(frmAirline& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmAirline::title), [&form](QDialog& dialog) {
        QVBoxLayout* rows = Dialog_Rows(dialog);
        auto* list = new Row_List_View(form.lvwAirlines, "Airlines", {0}, &dialog);
        rows->addWidget(list, 1);
        rows->addLayout(End_Row({&form.hypOK, &form.hypCancel}, dialog));
        dialog.resize(Text_Size(dialog, airline_characters, airline_lines));
        list->setFocus();
    });
}

}  // namespace norvane
