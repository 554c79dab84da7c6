#include "ui/panels/log_grid_model.h"

#include "ui/controls/bind.h"
#include "ui/window/qt_text.h"

namespace norvane {

Log_Grid_Model::Log_Grid_Model(ucFlightLog& log, QObject* parent)
    : QAbstractTableModel(parent), m_log(log), m_rows(static_cast<int>(log.Table().Row_Count())) {
    Keep(*this, log.table_changed.Connect([this] { Follow_Table(); }));
    Keep(*this, log.cell_changed.Connect([this](std::size_t row, std::size_t column) {
        const QModelIndex cell = index(static_cast<int>(row), static_cast<int>(column));
        Q_EMIT dataChanged(cell, cell);
    }));
    Keep(*this, log.layout_changed.Connect(
                    [this] { Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1); }));
}

/// Rows came, went or changed places. Lines are added and taken away at the end, so that the line
/// that is being edited stays where it is; the first one added is what was the empty line.
void Log_Grid_Model::Follow_Table() {
    const int rows = static_cast<int>(m_log.Table().Row_Count());
    if (rows > m_rows) {
        beginInsertRows({}, m_rows + 1, rows);
        m_rows = rows;
        endInsertRows();
    } else if (rows < m_rows) {
        beginRemoveRows({}, rows + 1, m_rows);
        m_rows = rows;
        endRemoveRows();
    }
    Q_EMIT dataChanged(index(0, 0), index(m_rows, columnCount() - 1));
    Q_EMIT headerDataChanged(Qt::Vertical, m_rows, m_rows);
}

int Log_Grid_Model::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : m_rows + 1;
}

int Log_Grid_Model::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(log_column_count);
}

std::optional<std::size_t> Log_Grid_Model::Row_Of(const QModelIndex& index) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= m_log.Table().Row_Count())
        return std::nullopt;
    return row;
}

QVariant Log_Grid_Model::data(const QModelIndex& index, int role) const {
    const auto row = Row_Of(index);
    if (!row)
        return {};
    if (role == Qt::ToolTipRole) {
        const QString remark =
            To_Q(m_log.Cell_Remark(*row, static_cast<std::size_t>(index.column())));
        return remark.isEmpty() ? QVariant() : QVariant(Tip_Of(remark));
    }
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    return To_Q(m_log.Table().Get(*row, static_cast<std::size_t>(index.column())));
}

QVariant Log_Grid_Model::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role == Qt::TextAlignmentRole && orientation == Qt::Horizontal)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    if (orientation == Qt::Horizontal)
        return To_Q(m_log.Layout().columns.at(static_cast<std::size_t>(section)).caption);
    return section < m_rows ? QVariant(section + 1) : QVariant("*");
}

Qt::ItemFlags Log_Grid_Model::flags(const QModelIndex& index) const {
    return QAbstractTableModel::flags(index) | Qt::ItemIsEditable;
}

}  // namespace norvane
