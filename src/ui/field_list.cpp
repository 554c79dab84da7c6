#include "ui/field_list.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>

#include "ui/bind.h"
#include "ui/qt_text.h"

namespace norvane {

Field_List::Field_List(frmReport& form, QWidget* parent)
    : QTreeWidget(parent), m_menu(new QMenu(this)) {
    setHeaderLabel(To_Q(frmReport::heading));
    header()->setSectionsClickable(false);
    setAccessibleName(To_Q(frmReport::heading));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setTabKeyNavigation(false);
    for (frmReport::Entry& entry : form.lvwFields)
        Add(entry);
    if (topLevelItemCount() > 0)
        setCurrentItem(topLevelItem(0));
    connect(this, &QTreeWidget::itemChanged, this, [this, &form](QTreeWidgetItem* item) {
        Check_Box& box = form.lvwFields.at(static_cast<std::size_t>(indexOfTopLevelItem(item))).box;
        if ((item->checkState(0) == Qt::Checked) != box.Checked())
            box.Click();
    });
    Bind(*m_menu->addAction(QString()), form.mnuSelectAll);
    Bind(*m_menu->addAction(QString()), form.mnuUnselectAll);
    m_menu->addSeparator();
    Bind(*m_menu->addAction(QString()), form.mnuExit);
}

void Field_List::Add(frmReport::Entry& entry) {
    auto* item = new QTreeWidgetItem(this, {To_Q(entry.caption)});
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable |
                   Qt::ItemNeverHasChildren);
    Follow(*this, entry.box, [item, &entry] {
        item->setCheckState(0, entry.box.Checked() ? Qt::Checked : Qt::Unchecked);
    });
}

void Field_List::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Keyboard)
        Open_Menu_At_Line();
    else
        m_menu->popup(event->globalPos());
}

void Field_List::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier)
        Open_Menu_At_Line();
    else
        QTreeWidget::keyPressEvent(event);
}

void Field_List::Open_Menu_At_Line() {
    const QRect line = currentItem() == nullptr ? QRect() : visualItemRect(currentItem());
    const QPoint below =
        viewport()->rect().contains(line.bottomLeft()) ? line.bottomLeft() : QPoint(0, 0);
    m_menu->popup(viewport()->mapToGlobal(below));
}

}  // namespace norvane
