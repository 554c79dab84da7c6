#include "ui/dialogs/field_list.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>

#include "ui/controls/bind.h"
#include "ui/window/qt_text.h"

namespace norvane {

Field_List::Field_List(std::string_view heading, std::deque<frmReport::Entry>& lines,
                       const std::array<Menu_Command*, 3>& commands, QWidget* parent)
    : QTreeWidget(parent), m_menu(new QMenu(this)) {
    setHeaderLabel(To_Q(heading));
    header()->setSectionsClickable(false);
    setAccessibleName(To_Q(heading));
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setTabKeyNavigation(false);
    for (frmReport::Entry& entry : lines)
        Add(entry);
    if (topLevelItemCount() > 0)
        setCurrentItem(topLevelItem(0));
    connect(this, &QTreeWidget::itemChanged, this, [this, &lines](QTreeWidgetItem* item) {
        Check_Box& box = lines.at(static_cast<std::size_t>(indexOfTopLevelItem(item))).box;
        if ((item->checkState(0) == Qt::Checked) != box.Checked())
            box.Click();
    });
    for (Menu_Command* command : commands) {
        if (command == commands.back())
            m_menu->addSeparator();
        Bind(*m_menu->addAction(QString()), *command);
    }
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
