#include "ui/panels/log_cell_editor.h"

#include <QComboBox>
#include <QCompleter>
#include <QHeaderView>
#include <QLineEdit>
#include <QTimer>
#include <QTreeView>
#include <utility>

#include "ui/controls/bind.h"
#include "ui/panels/log_grid_model.h"
#include "ui/window/look.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

constexpr int code_width_twips = 900;
constexpr int airport_width_twips = 5200;
constexpr int airports_shown = 12;
constexpr int code_column = 0;
constexpr int name_column = 1;

QString Text_Of(const QWidget& editor) {
    if (const auto* list = qobject_cast<const QComboBox*>(&editor))
        return list->currentText();
    const auto* line = qobject_cast<const QLineEdit*>(&editor);
    return line == nullptr ? QString() : line->text();
}

/// Two columns, all rows of one height: tens of thousands open at once.
QTreeView* Make_Airport_View() {
    auto* view = new QTreeView;
    view->setRootIsDecorated(false);
    view->setUniformRowHeights(true);
    view->setAllColumnsShowFocus(true);
    view->setMinimumWidth(Twips_To_Pixels(*view, airport_width_twips));
    view->header()->setStretchLastSection(true);
    return view;
}

void Set_Code_Width(QTreeView& view) {
    view.header()->resizeSection(code_column, Twips_To_Pixels(view, code_width_twips));
}

}  // namespace

int Airport_Model::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_log.Airports().size());
}

int Airport_Model::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : name_column + 1;
}

QVariant Airport_Model::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    const Airport_Pick& airport = m_log.Airports().at(static_cast<std::size_t>(index.row()));
    return To_Q(index.column() == code_column ? airport.icao : airport.name);
}

QVariant Airport_Model::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    return section == code_column ? "ICAO " : "Airport Name";
}

void Airport_Model::Renew() {
    beginResetModel();
    endResetModel();
}

Log_Cell_Editor::Log_Cell_Editor(ucFlightLog& log, Log_Grid_Model& model, QObject* parent)
    : QStyledItemDelegate(parent),
      m_log(log),
      m_model(model),
      m_airports(new Airport_Model(log, this)) {
    Keep(*this, log.lists_changed.Connect([this] { m_airports->Renew(); }));
    Keep(*this, log.commit_edit_wanted.Connect([this] { Commit_Open(); }));
    Keep(*this, log.drop_edit_wanted.Connect([this] { Drop_Open(); }));
}

QWidget* Log_Cell_Editor::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                       const QModelIndex& index) const {
    const auto column = static_cast<std::size_t>(index.column());
    const std::vector<std::string>& entries = m_log.Layout().columns.at(column).entries;
    const bool is_airport = column == log_column::origin || column == log_column::destination;
    QWidget* editor = nullptr;
    if (is_airport && !m_log.Airports().empty())
        editor = Make_Airport_List(parent);
    else if (column == log_column::aircraft_type && !m_log.Aircraft_Types().empty())
        editor = Make_List(parent, m_log.Aircraft_Types());
    else if (!entries.empty())
        editor = Make_List(parent, entries);
    else
        editor = new QLineEdit(parent);
    editor->setAccessibleName(
        m_model.headerData(index.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    m_editor = editor;
    m_edited = index;
    m_picked = -1;
    if (const auto row = m_model.Row_Of(index))
        m_log.Begin_Edit(*row, column);
    return editor;
}

QWidget* Log_Cell_Editor::Make_List(QWidget* parent,
                                    const std::vector<std::string>& entries) const {
    auto* list = new QComboBox(parent);
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setFrame(false);
    for (const std::string& entry : entries)
        list->addItem(To_Q(entry));
    connect(list, &QComboBox::activated, this, [this, list](int) { Close_With_Commit(list); });
    return list;
}

QWidget* Log_Cell_Editor::Make_Airport_List(QWidget* parent) const {
    auto* list = new QComboBox(parent);
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    list->setFrame(false);
    // Else every airport would be measured.
    list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    list->setMaxVisibleItems(airports_shown);
    auto* view = Make_Airport_View();
    list->setView(view);
    list->setModel(m_airports);
    list->setModelColumn(code_column);
    view->setColumnHidden(name_column, false);
    Set_Code_Width(*view);
    connect(list, &QComboBox::activated, this, [this, list](int row) {
        m_picked = row;
        Close_With_Commit(list);
    });

    auto* offered = Make_Airport_View();
    offered->setHeaderHidden(true);
    auto* completer = new QCompleter(m_airports, list);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setCompletionColumn(code_column);
    completer->setMaxVisibleItems(airports_shown);
    completer->setPopup(offered);
    Set_Code_Width(*offered);
    list->setCompleter(completer);
    return list;
}

/// The pilot chose from the list: the edit is over. Where that was by Return, the toolkit ends it
/// as well, in an event that comes first.
void Log_Cell_Editor::Close_With_Commit(QWidget* editor) const {
    auto* self = const_cast<Log_Cell_Editor*>(this);
    QTimer::singleShot(0, editor, [self, editor] {
        if (editor != self->m_editor)
            return;
        Q_EMIT self->commitData(editor);
        Q_EMIT self->closeEditor(editor, NoHint);
    });
}

void Log_Cell_Editor::setEditorData(QWidget* editor, const QModelIndex& index) const {
    const QString text = index.data(Qt::EditRole).toString();
    if (auto* list = qobject_cast<QComboBox*>(editor)) {
        // An entry that stands in the box unchosen would be chosen as soon as the list opens.
        list->setCurrentIndex(list->findText(text, Qt::MatchFixedString | Qt::MatchCaseSensitive));
        list->setEditText(text);
        list->lineEdit()->selectAll();
    } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        line->setText(text);
        line->selectAll();
    }
}

/// The panel may answer with a box, within which the editor would be closed a second time: it is
/// asked when the editor is gone.
void Log_Cell_Editor::setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                                   const QModelIndex& index) const {
    if (editor != m_editor)
        return;
    m_typed.push_back({index, Text_Of(*editor), m_picked});
    m_editor = nullptr;
    auto* self = const_cast<Log_Cell_Editor*>(this);
    QTimer::singleShot(0, self, [self] { self->Take_Typed(); });
}

/// One at a time: while the panel has a text refused in a box, the next ones wait.
void Log_Cell_Editor::Take_Typed() {
    while (!m_storing && !m_typed.empty()) {
        const Typed typed = std::move(m_typed.front());
        m_typed.pop_front();
        Store(typed);
    }
}

/// Null for a text that was not picked, or changed since.
const Airport_Pick* Log_Cell_Editor::Picked(const Typed& typed) const {
    const auto& airports = m_log.Airports();
    const auto row = static_cast<std::size_t>(typed.airport);
    if (typed.airport < 0 || row >= airports.size() || To_Q(airports[row].icao) != typed.text)
        return nullptr;
    return &airports[row];
}

/// True when the cell has the text now.
bool Log_Cell_Editor::Store(const Typed& typed) {
    if (m_storing || !typed.cell.isValid())
        return false;
    m_storing = true;
    const auto column = static_cast<std::size_t>(typed.cell.column());
    const std::string text = From_Q(typed.text);
    auto row = m_model.Row_Of(typed.cell);
    const Airport_Pick* airport = Picked(typed);
    bool taken = row ? text == m_log.Table().Get(*row, column) : text.empty();
    if (!taken || airport != nullptr) {
        if (!row) {
            row = m_log.Add_Row();
            m_log.Begin_Edit(*row, column);
        }
        if (airport != nullptr)
            m_log.Pick_Airport(*row, column, *airport);
        taken = airport != nullptr || m_log.Commit_Edit(*row, column, text);
    }
    m_storing = false;
    return taken;
}

/// The panel needs the text now. One that it refuses stays in the editor, unless its box closed it.
void Log_Cell_Editor::Commit_Open() {
    Take_Typed();
    if (!m_editor || m_storing)
        return;
    const QPointer<QWidget> editor = std::exchange(m_editor, nullptr);
    const bool taken = Store({m_edited, Text_Of(*editor), m_picked});
    if (taken && editor)
        Q_EMIT closeEditor(editor, NoHint);
    else if (!m_editor)
        m_editor = editor;
}

void Log_Cell_Editor::Drop_Open() {
    m_typed.clear();
    const QPointer<QWidget> editor = std::exchange(m_editor, nullptr);
    if (editor)
        Q_EMIT closeEditor(editor, RevertModelCache);
}

}  // namespace norvane
