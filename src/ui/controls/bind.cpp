#include "ui/controls/bind.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QTimer>
#include <memory>
#include <utility>

#include "ui/controls/link_button.h"
#include "ui/controls/value_label.h"
#include "ui/window/guarded_application.h"
#include "ui/window/look.h"
#include "ui/window/pictures.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

/// Lives with a widget and ends a connection with it.
class Kept_Connection : public QObject {
  public:
    Kept_Connection(QObject& owner, const Connection& connection) : QObject(&owner) {
        m_connections.Keep(connection);
    }

  private:
    Connections m_connections;
};

/// Sees a widget's events before the widget; true from `handle` keeps an event from it.
class Event_Watch : public QObject {
  public:
    Event_Watch(QObject& watched, std::function<bool(QEvent&)> handle)
        : QObject(&watched), m_handle(std::move(handle)) {
        watched.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override { return m_handle(*event); }

  private:
    std::function<bool(QEvent&)> m_handle;
};

/// The pilot returns to a box that was never left: from another window, or a menu. Selecting all
/// of it then would let the next letter replace what was being typed.
bool Comes_Back(const QFocusEvent& event) {
    return event.reason() == Qt::ActiveWindowFocusReason ||
           event.reason() == Qt::PopupFocusReason || event.reason() == Qt::MenuBarFocusReason;
}

/// Selects all of `edit` when `event` brings the focus.
template <class Edit>
void Select_On_Focus(const QEvent& event, Edit& edit) {
    // After the event itself: the press that brought the focus places the cursor.
    if (event.type() == QEvent::FocusIn && !Comes_Back(static_cast<const QFocusEvent&>(event)))
        QTimer::singleShot(0, &edit, [&edit] { edit.selectAll(); });
}

/// What the binding does when a box gets or loses the focus.
template <class Edit>
void Watch_Focus(Edit& edit, Text_Box& model) {
    new Event_Watch(edit, [&edit, &model](QEvent& event) {
        Select_On_Focus(event, edit);
        if (event.type() == QEvent::FocusOut)
            model.Leave();
        return false;
    });
}

/// On this system the toolkit tells a list's entry in place of its name; the description is told
/// behind it.
void Name_List(QComboBox& list, const QString& caption) {
    list.setAccessibleName(caption);
    list.setAccessibleDescription(caption);
}

/// Enter opens a list.
void Watch_List(QComboBox& list) {
    new Event_Watch(list, [&list](QEvent& event) {
        if (event.type() == QEvent::KeyPress) {
            const auto& press = static_cast<QKeyEvent&>(event);
            const int key = press.key();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                list.showPopup();
                return true;
            }
            // With Ctrl the tab turns pages, which a list would take for a letter.
            if ((key == Qt::Key_Tab || key == Qt::Key_Backtab) &&
                (press.modifiers() & Qt::ControlModifier) != 0) {
                event.ignore();
                return true;
            }
        }
        // The wheel scrolls the form; it must not change a list that it happens to pass over.
        if (event.type() == QEvent::Wheel && !list.hasFocus()) {
            event.ignore();
            return true;
        }
        return false;
    });
}

void Show_Entries(QComboBox& list, const std::vector<std::string>& entries) {
    QStringList wanted;
    for (const std::string& entry : entries)
        wanted << To_Q(entry);
    QStringList shown;
    for (int i = 0; i < list.count(); ++i)
        shown << list.itemText(i);
    if (wanted == shown)
        return;
    // An entry that the list takes up while it is filled is no choice of the pilot's.
    const QSignalBlocker quiet(&list);
    list.clear();
    list.addItems(wanted);
}

/// Completes what the pilot types on a closed list to the first entry that begins with it. Letters
/// belong together when they follow each other as quickly as the desktop asks; one that leads to no
/// entry is passed over.
class Type_Ahead : public QObject {
  public:
    Type_Ahead(QComboBox& list, Combo_Box& model) : QObject(&list), m_list(list), m_model(model) {
        list.installEventFilter(this);
    }

  protected:
    bool eventFilter(QObject* /*list*/, QEvent* event) override {
        if (event->type() == QEvent::FocusIn)
            m_typed.clear();
        return event->type() == QEvent::KeyPress && Typed(static_cast<QKeyEvent&>(*event));
    }

  private:
    /// False for a key that is not part of a name.
    bool Typed(const QKeyEvent& press) {
        const bool goes_on =
            m_last.isValid() && m_last.elapsed() < QApplication::keyboardInputInterval();
        if (!goes_on)
            m_typed.clear();
        const QString letter = press.text();
        const bool command = (press.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0;
        // A blank alone opens the list.
        if (command || letter.isEmpty() || !letter[0].isPrint() ||
            (m_typed.isEmpty() && letter == " "))
            return false;
        const int entry = m_list.findText(m_typed + letter, Qt::MatchStartsWith);
        if (entry >= 0) {
            m_typed += letter;
            m_last.start();
            m_model.Choose(entry);
        }
        return true;
    }

    QComboBox& m_list;
    Combo_Box& m_model;
    QString m_typed;
    QElapsedTimer m_last;
};

/// Completes what the pilot types into a list to the first entry that begins with it. The completed
/// part is selected: typing on replaces it, taking letters away leaves what was typed.
class Completion : public QObject {
  public:
    Completion(QComboBox& list, Text_Combo& model)
        : QObject(&list), m_edit(*list.lineEdit()), m_model(model) {
        list.installEventFilter(this);
        connect(&m_edit, &QLineEdit::textEdited, this,
                [this](const QString& text) { Edited(text); });
    }

  protected:
    bool eventFilter(QObject* /*list*/, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const auto& press = static_cast<QKeyEvent&>(*event);
            m_takes_away = press.key() == Qt::Key_Backspace || press.key() == Qt::Key_Delete ||
                           press.modifiers() == Qt::ControlModifier;
        } else if (event->type() == QEvent::InputMethod) {
            m_takes_away = false;
        }
        return false;
    }

  private:
    void Edited(QString text) {
        // The entry was shown as it is written; the pilot's own letters come back.
        if (m_completed && text.startsWith(m_typed, Qt::CaseInsensitive))
            text.replace(0, m_typed.size(), m_typed);
        m_typed = text;
        const bool at_end = m_edit.cursorPosition() == m_edit.text().size();
        const QString entry = at_end && !m_takes_away ? First_Beginning_With(text) : QString();
        m_completed = !entry.isEmpty();
        const QString shown = m_completed ? entry : text;
        const int cursor = m_edit.cursorPosition();
        if (shown != m_edit.text()) {
            m_edit.setText(shown);
            m_edit.setCursorPosition(cursor);
        }
        if (m_completed)
            m_edit.setSelection(static_cast<int>(text.size()),
                                static_cast<int>(entry.size() - text.size()));
        m_model.Enter(From_Q(shown));
    }

    [[nodiscard]] QString First_Beginning_With(const QString& text) const {
        if (text.isEmpty())
            return {};
        for (const std::string& entry : m_model.Entries()) {
            const QString name = To_Q(entry);
            if (name.startsWith(text, Qt::CaseInsensitive))
                return name;
        }
        return {};
    }

    QLineEdit& m_edit;
    Text_Combo& m_model;
    /// The pilot's own letters, while an entry is shown for them.
    QString m_typed;
    bool m_completed = false;
    bool m_takes_away = false;
};

/// Shows the model's text and selects its entry, or none. A list that changes its entry puts that
/// entry's text into its box; the pilot's cursor and selection there are kept.
void Show_Text(QComboBox& list, const Text_Combo& model) {
    QLineEdit& edit = *list.lineEdit();
    const QString text = To_Q(model.Text());
    const bool same = edit.text() == text;
    if (same && list.currentIndex() == model.Selected())
        return;
    const int cursor = edit.cursorPosition();
    const int start = edit.selectionStart();
    const int length = edit.selectionLength();
    list.setCurrentIndex(model.Selected());
    edit.setText(text);
    if (same && start >= 0)
        edit.setSelection(start, length);
    else
        edit.setCursorPosition(same || edit.hasFocus() ? cursor : 0);
}

/// Marks a box whose text is odd, and says what is odd about it where the pilot points at it.
class Remark_Mark {
  public:
    explicit Remark_Mark(QLineEdit& edit) : m_edit(edit) {}

    void Show(const QString& remark) {
        if (remark.isEmpty() && m_mark == nullptr)
            return;
        if (m_mark == nullptr)
            m_mark = m_edit.addAction(QIcon(), QLineEdit::TrailingPosition);
        m_mark->setIcon(Remark_Icon(m_edit.palette().color(QPalette::PlaceholderText)));
        m_mark->setVisible(!remark.isEmpty());
        m_mark->setToolTip(Tip_Of(remark));
        m_edit.setToolTip(Tip_Of(remark));
        m_edit.setAccessibleDescription(remark);
    }

  private:
    QLineEdit& m_edit;
    QAction* m_mark = nullptr;
};

void Show_State(QWidget& widget, const Control& model) {
    widget.setEnabled(model.Enabled());
    widget.setVisible(model.Visible());
}

}  // namespace

void Keep(QObject& owner, const Connection& connection) {
    new Kept_Connection(owner, connection);
}

void Follow(QObject& widget, Control& model, const std::function<void()>& run) {
    Keep(widget, model.changed.Connect(run));
    run();
}

void Bind(QLineEdit& edit, Text_Box& model, const QString& caption) {
    edit.setAccessibleName(caption);
    Follow(edit, model, [&edit, &model, mark = std::make_shared<Remark_Mark>(edit)] {
        mark->Show(To_Q(model.Remark()));
        const QString text = To_Q(model.Text());
        if (text != edit.text()) {
            const int cursor = edit.cursorPosition();
            edit.setText(text);
            // What the pilot is typing may have been cleaned; a value of the program's is read from
            // its beginning.
            edit.setCursorPosition(edit.hasFocus() ? cursor : 0);
        }
        Show_State(edit, model);
    });
    QObject::connect(&edit, &QLineEdit::textEdited, &edit,
                     [&model](const QString& text) { model.Enter(From_Q(text)); });
    Watch_Focus(edit, model);
}

void Bind(QPlainTextEdit& edit, Text_Box& model, const QString& caption) {
    edit.setAccessibleName(caption);
    edit.setTabChangesFocus(true);
    Follow(edit, model, [&edit, &model] {
        const QString text = To_Q(model.Text());
        if (text != edit.toPlainText()) {
            const QSignalBlocker quiet(&edit);
            const int position = edit.textCursor().position();
            edit.setPlainText(text);
            QTextCursor cursor = edit.textCursor();
            cursor.setPosition(edit.hasFocus() ? std::min(position, static_cast<int>(text.size()))
                                               : 0);
            edit.setTextCursor(cursor);
        }
        Show_State(edit, model);
    });
    QObject::connect(&edit, &QPlainTextEdit::textChanged, &edit,
                     [&edit, &model] { model.Enter(From_Q(edit.toPlainText())); });
    Watch_Focus(edit, model);
}

void Bind(QComboBox& list, Combo_Box& model, const QString& caption) {
    Name_List(list, caption);
    list.setFocusPolicy(Qt::StrongFocus);
    Follow(list, model, [&list, &model] {
        Show_Entries(list, model.Entries());
        list.setCurrentIndex(model.Selected());
        Show_State(list, model);
    });
    QObject::connect(&list, &QComboBox::activated, &list,
                     [&model](int index) { model.Choose(index); });
    Watch_List(list);
    new Type_Ahead(list, model);
    // The arrow keys choose without opening the list.
    QObject::connect(&list, &QComboBox::currentIndexChanged, &list, [&list, &model](int index) {
        if (list.hasFocus() && index != model.Selected())
            model.Choose(index);
    });
}

void Bind(QComboBox& list, Text_Combo& model, const QString& caption) {
    Name_List(list, caption);
    list.setFocusPolicy(Qt::StrongFocus);
    list.setEditable(true);
    list.setInsertPolicy(QComboBox::NoInsert);
    list.setCompleter(nullptr);
    Follow(list, model, [&list, &model] {
        Show_Entries(list, model.Entries());
        Show_Text(list, model);
        Show_State(list, model);
    });
    QObject::connect(&list, &QComboBox::activated, &list,
                     [&list, &model](int index) { model.Enter(From_Q(list.itemText(index))); });
    Watch_List(list);
    // Events come while the list is being destroyed, too: it is no longer to be asked then.
    new Event_Watch(list, [&edit = *list.lineEdit()](QEvent& event) {
        Select_On_Focus(event, edit);
        return false;
    });
    new Completion(list, model);
}

void Bind(QCheckBox& box, Check_Box& model) {
    Follow(box, model, [&box, &model] {
        box.setChecked(model.Checked());
        Show_State(box, model);
    });
    QObject::connect(&box, &QCheckBox::clicked, &box, [&box, &model] {
        model.Click();
        box.setChecked(model.Checked());
    });
}

void Bind(QRadioButton& button, Option_Button& model) {
    Follow(button, model, [&button, &model] {
        button.setChecked(model.Chosen());
        // Tab comes to the option that holds; arrow keys go on from there.
        button.setFocusPolicy(model.Chosen() ? Qt::StrongFocus : Qt::ClickFocus);
        Show_State(button, model);
    });
    QObject::connect(&button, &QRadioButton::clicked, &button, [&button, &model] {
        model.Click();
        button.setChecked(model.Chosen());
    });
}

void Bind(QFrame& patch, Swatch& model, const QString& caption) {
    patch.setAutoFillBackground(true);
    Follow(patch, model, [&patch, &model, caption] {
        const QColor color = Setting_Color(model.Color());
        QPalette shown;
        shown.setColor(QPalette::Window, color);
        patch.setPalette(shown);
        patch.setAccessibleName(caption + ": " + color.name());
        Show_State(patch, model);
    });
}

void Bind(Value_Label& value, Label& model, const QString& caption) {
    Follow(value, model, [&value, &model, caption] {
        const QString text = To_Q(model.Text());
        value.Set_Text(text);
        value.setAccessibleName(caption + ": " + text);
        Show_State(value, model);
    });
}

void Bind(QLabel& caption, Label& model) {
    caption.setTextFormat(Qt::PlainText);
    Follow(caption, model, [&caption, &model] {
        caption.setText(To_Q(model.Text()));
        Show_State(caption, model);
    });
}

void Bind_Caption(QLabel& caption, Control& follows) {
    Follow(caption, follows, [&caption, &follows] { Show_State(caption, follows); });
}

void Bind(Link_Button& link, Link& model) {
    Follow(link, model, [&link, &model] {
        link.setText(To_Q(model.Caption()));
        Show_State(link, model);
    });
    QObject::connect(&link, &Link_Button::clicked, &link,
                     [&model] { Run_Command([&model] { model.Click(); }); });
}

void Bind(QAction& action, Menu_Command& model) {
    Follow(action, model, [&action, &model] {
        action.setText(To_Q(model.Caption()));
        action.setEnabled(model.Enabled());
        action.setVisible(model.Visible());
    });
    QObject::connect(&action, &QAction::triggered, &action,
                     [&model] { Run_Command([&model] { model.Choose(); }); });
}

}  // namespace norvane
