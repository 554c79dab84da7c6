#pragma once
// The flight log's table as Qt's views read it, cell by cell, without a copy. Below the last flight
// stands one empty line, in which typing adds a row.

#include <QAbstractTableModel>

#include "logpanel/uc_flight_log.h"

namespace norvane {

class Log_Grid_Model : public QAbstractTableModel {
  public:
    /// The panel lives longer.
    Log_Grid_Model(ucFlightLog& log, QObject* parent);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

    /// The row of the log that a line of the grid shows; none for the empty line.
    [[nodiscard]] std::optional<std::size_t> Row_Of(const QModelIndex& index) const;

  private:
    void Follow_Table();

    ucFlightLog& m_log;
    /// Rows of the log that the views know of.
    int m_rows = 0;
};

}  // namespace norvane
