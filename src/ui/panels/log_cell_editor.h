#pragma once
// Edits the cells of the flight log's grid in place: as a line of text, or with a list beside it
// (airports with their names, aircraft types, the entries of a field). What the pilot typed goes to
// the panel, which checks it.

#include <QAbstractTableModel>
#include <QPointer>
#include <QStyledItemDelegate>
#include <deque>

#include "logpanel/uc_flight_log.h"

namespace norvane {

class Log_Grid_Model;

/// The airports that a cell offers, code and name.
class Airport_Model : public QAbstractTableModel {
  public:
    Airport_Model(const ucFlightLog& log, QObject* parent)
        : QAbstractTableModel(parent), m_log(log) {}

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;
    /// The panel has other airports now.
    void Renew();

  private:
    const ucFlightLog& m_log;
};

class Log_Cell_Editor : public QStyledItemDelegate {
  public:
    Log_Cell_Editor(ucFlightLog& log, Log_Grid_Model& model, QObject* parent);

    [[nodiscard]] QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                        const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;

  private:
    /// What the pilot typed, for the cell that it was typed into.
    struct Typed {
        QPersistentModelIndex cell;
        QString text;
        /// The airport that was picked for it, -1 when it was typed.
        int airport = -1;
    };

    [[nodiscard]] QWidget* Make_List(QWidget* parent,
                                     const std::vector<std::string>& entries) const;
    [[nodiscard]] QWidget* Make_Airport_List(QWidget* parent) const;
    void Close_With_Commit(QWidget* editor) const;
    void Take_Typed();
    bool Store(const Typed& typed);
    void Commit_Open();
    void Drop_Open();
    [[nodiscard]] const Airport_Pick* Picked(const Typed& typed) const;

    ucFlightLog& m_log;
    Log_Grid_Model& m_model;
    Airport_Model* m_airports;
    // Qt hands the editor's begin and end to functions that change nothing.
    mutable QPointer<QWidget> m_editor;
    mutable QPersistentModelIndex m_edited;
    /// The airport that was picked from the list, not typed.
    mutable int m_picked = -1;
    /// Quick keys may end a second edit before the first one's text is taken.
    mutable std::deque<Typed> m_typed;
    bool m_storing = false;
};

}  // namespace norvane
