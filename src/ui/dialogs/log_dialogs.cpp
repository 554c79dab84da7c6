#include "ui/dialogs/log_dialogs.h"

#include <QLabel>
#include <QLineEdit>

#include "logpanel/frm_convert_log.h"
#include "logpanel/frm_flight_log.h"
#include "logpanel/frm_log.h"
#include "logpanel/frm_recover.h"
#include "ui/controls/bind.h"
#include "ui/controls/link_button.h"
#include "ui/dialogs/dialog_rows.h"
#include "ui/dialogs/field_list.h"
#include "ui/dialogs/modal_dialog.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr QSize field_list_size(300, 420);
constexpr QSize row_list_size(720, 360);
/// Room for a log's name, and for a file's shortened path.
constexpr int name_characters = 36;
constexpr int path_characters = 48;

}  // namespace

void Draw(frmReport& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmReport::title), [&form](QDialog& dialog) {
        QVBoxLayout* rows = Dialog_Rows(dialog);
        auto* list =
            new Field_List(frmReport::heading, form.lvwFields,
                           {&form.mnuSelectAll, &form.mnuUnselectAll, &form.mnuExit}, &dialog);
        rows->addWidget(list, 1);
        rows->addLayout(End_Row({&form.hypOK, &form.hypCancel}, dialog));
        dialog.resize(field_list_size);
        list->setFocus();
    });
}

void Draw(frmLog& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmLog::title), [&form](QDialog& dialog) {
        Form_Rows rows(dialog);
        QComboBox* list = rows.Add_List(To_Q(frmLog::label), form.cboLogs, name_characters);
        rows.Add_End({&form.hypOK, &form.hypCancel});
        list->setFocus();
    });
}

void Draw(frmFlightLog& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmFlightLog::title), [&form](QDialog& dialog) {
        Form_Rows rows(dialog);
        rows.Add_Figure("Active Flight Log:", form.lblActiveLog, name_characters);
        QComboBox* list = rows.Add_List(To_Q(frmFlightLog::label), form.cboLogs, name_characters);
        for (Link& link : form.hypACARS)
            rows.Add_Link(link);
        rows.Add_End({&form.hypClose});
        list->setFocus();
    });
}

void Draw(frmConvertLog& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmConvertLog::title), [&form](QDialog& dialog) {
        Form_Rows rows(dialog);
        rows.Add_Figure(To_Q(frmConvertLog::file_label), form.lblSelectedLog, path_characters);
        Link_Button* select = rows.Add_Link(form.hypACARS[0]);
        auto* name = new QLineEdit(&dialog);
        Bind(*name, form.txtName, To_Q(frmConvertLog::name_label).remove(':'));
        rows.Add(To_Q(frmConvertLog::name_label), *name);
        rows.Add_Link(form.hypACARS[1]);
        rows.Add_Figure("Status:", form.lblStatus, path_characters);
        rows.Add_End({&form.hypClose});
        select->setFocus();
    });
}

void Draw(frmRecover& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmRecover::title), [&form](QDialog& dialog) {
        QVBoxLayout* rows = Dialog_Rows(dialog);
        auto* list =
            new Field_List(frmRecover::heading, form.lvwRows,
                           {&form.mnuSelectAll, &form.mnuUnselectAll, &form.mnuExit}, &dialog);
        rows->addWidget(list, 1);
        auto* log = new QLabel(&dialog);
        log->setTextFormat(Qt::PlainText);
        Follow(*log, form.lblActiveLog, [log, &form] {
            log->setText("Active flight log: " + To_Q(form.lblActiveLog.Text()));
        });
        rows->addWidget(log);
        rows->addLayout(End_Row({&form.hypRecover, &form.hypClose}, dialog));
        dialog.resize(row_list_size);
        list->setFocus();
    });
}

}  // namespace norvane
