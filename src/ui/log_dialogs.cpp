#include "ui/log_dialogs.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "flightlog/frm_convert_log.h"
#include "flightlog/frm_flight_log.h"
#include "flightlog/frm_log.h"
#include "ui/bind.h"
#include "ui/field_list.h"
#include "ui/link_button.h"
#include "ui/modal_dialog.h"
#include "ui/qt_text.h"
#include "ui/value_label.h"

namespace norvane {

namespace {

constexpr int margin = 12;
constexpr int row_gap = 6;
constexpr int caption_gap = 8;
constexpr int link_gap = 14;
constexpr QSize field_list_size(300, 420);
/// Room for a log's name, and for a file's shortened path.
constexpr int name_characters = 36;
constexpr int path_characters = 48;

Link_Button* Make_Link(Link& model, QWidget& parent) {
    auto* link = new Link_Button({}, &parent);
    Bind(*link, model);
    return link;
}

/// The links that end a dialog, at the right of its last row.
QHBoxLayout* End_Row(std::initializer_list<Link*> links, QWidget& parent) {
    auto* row = new QHBoxLayout;
    row->setSpacing(link_gap);
    row->addStretch(1);
    for (Link* model : links)
        row->addWidget(Make_Link(*model, parent));
    return row;
}

/// A dialog's rows: captions at the left, what they name at the right. Widgets are made in reading
/// order, which is the order of the Tab key.
class Form_Rows {
  public:
    explicit Form_Rows(QDialog& dialog)
        : m_dialog(dialog), m_rows(new QVBoxLayout(&dialog)), m_grid(new QGridLayout) {
        m_rows->setContentsMargins(margin, margin, margin, margin);
        m_rows->setSpacing(margin);
        m_rows->addLayout(m_grid);
        m_rows->addStretch(1);
        m_grid->setHorizontalSpacing(caption_gap);
        m_grid->setVerticalSpacing(row_gap);
        m_grid->setColumnStretch(1, 1);
    }

    void Add(const QString& caption, QWidget& value) {
        auto* words = new QLabel(caption, &m_dialog);
        words->setTextFormat(Qt::PlainText);
        words->setBuddy(&value);
        m_grid->addWidget(words, m_count, 0);
        m_grid->addWidget(&value, m_count++, 1);
    }
    void Add_Figure(const QString& caption, Label& model, int characters) {
        auto* figure = new Value_Label(characters, &m_dialog);
        Bind(*figure, model, QString(caption).remove(':'));
        Add(caption, *figure);
    }
    QComboBox* Add_List(const QString& caption, Text_Combo& model) {
        auto* list = new QComboBox(&m_dialog);
        list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        // A long name among the entries makes no dialog wider.
        list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        list->setMinimumContentsLength(name_characters);
        Bind(*list, model, QString(caption).remove(':'));
        Add(caption, *list);
        return list;
    }
    Link_Button* Add_Link(Link& model) {
        Link_Button* link = Make_Link(model, m_dialog);
        m_grid->addWidget(link, m_count++, 1, Qt::AlignLeft);
        return link;
    }
    void Add_End(std::initializer_list<Link*> links) {
        m_rows->addLayout(End_Row(links, m_dialog));
    }

  private:
    QDialog& m_dialog;
    QVBoxLayout* m_rows;
    QGridLayout* m_grid;
    int m_count = 0;
};

}  // namespace

void Draw(frmReport& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmReport::title), [&form](QDialog& dialog) {
        auto* rows = new QVBoxLayout(&dialog);
        rows->setContentsMargins(margin, margin, margin, margin);
        rows->setSpacing(margin);
        auto* list = new Field_List(form, &dialog);
        rows->addWidget(list, 1);
        rows->addLayout(End_Row({&form.hypOK, &form.hypCancel}, dialog));
        dialog.resize(field_list_size);
        list->setFocus();
    });
}

void Draw(frmLog& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmLog::title), [&form](QDialog& dialog) {
        Form_Rows rows(dialog);
        QComboBox* list = rows.Add_List(To_Q(frmLog::label), form.cboLogs);
        rows.Add_End({&form.hypOK, &form.hypCancel});
        list->setFocus();
    });
}

void Draw(frmFlightLog& form, Qt_Desktop& desktop, QObject& owner) {
    Show_With(form, desktop, owner, To_Q(frmFlightLog::title), [&form](QDialog& dialog) {
        Form_Rows rows(dialog);
        rows.Add_Figure("Active Flight Log:", form.lblActiveLog, name_characters);
        QComboBox* list = rows.Add_List(To_Q(frmFlightLog::label), form.cboLogs);
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

}  // namespace norvane
