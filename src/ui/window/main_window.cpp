#include "ui/window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QStyle>
#include <array>
#include <chrono>
#include <utility>

#include "ui/controls/bind.h"
#include "ui/controls/value_label.h"
#include "ui/dialogs/about_dialogs.h"
#include "ui/dialogs/log_dialogs.h"
#include "ui/dialogs/pirep_view.h"
#include "ui/dialogs/response_view.h"
#include "ui/dialogs/world_dialogs.h"
#include "ui/panels/acars_view.h"
#include "ui/panels/flight_log_view.h"
#include "ui/panels/late_view.h"
#include "ui/panels/message_view.h"
#include "ui/panels/settings_view.h"
#include "ui/panels/stats_view.h"
#include "ui/window/frame_view.h"
#include "ui/window/look.h"
#include "ui/window/pictures.h"
#include "ui/window/qt_desktop.h"
#include "ui/window/qt_text.h"

namespace norvane {

namespace {

/// Longer than a desktop takes to tell all of one change.
constexpr std::chrono::milliseconds still_after(200);

/// A panel of the status bar: what it is called and how many digits it has room for.
struct Status_Row {
    Status_Panel panel;
    const char* name;
    int characters;
};
constexpr std::array status_rows = {
    Status_Row{Status_Panel::flight_log, "Flight log", 24},
    Status_Row{Status_Panel::acars, "ACARS state", 14},
    Status_Row{Status_Panel::simulator, "Simulator time", 9},
    Status_Row{Status_Panel::local, "UTC of this computer", 12},
    Status_Row{Status_Panel::time, "Time of day", 6},
    Status_Row{Status_Panel::date, "Date", 11},
};

struct Key_Row {
    Qt::Key key;
    Window_Key meaning;
};
constexpr std::array key_rows = {
    Key_Row{Qt::Key_F1, Window_Key::f1},
    Key_Row{Qt::Key_F2, Window_Key::f2},
    Key_Row{Qt::Key_F3, Window_Key::f3},
    Key_Row{Qt::Key_F4, Window_Key::f4},
};

}  // namespace

Main_Window::Main_Window(frmMain& form, Program& program, Qt_Desktop& desktop)
    : m_form(form),
      m_desktop(desktop),
      m_frame(new Frame_View(form.frame, this)),
      m_wait(new QLabel(this)) {
    setWindowIcon(Program_Icon());
    setCentralWidget(m_frame);
    m_still.setSingleShot(true);
    m_still.setInterval(still_after);
    connect(&m_still, &QTimer::timeout, this, [this] { Settle(); });
    Add_Panels(program);
    Add_Window(new Response_View(program.response, this));
    Add_Dialogs(program);
    Add_Menus();
    Add_Keys();
    Add_Status_Bar();
    Place();
    Keep(*this, m_form.changed.Connect([this] { Show_Caption(); }));
    Keep(*this, m_form.Closed.Connect([this] { End(); }));
    Show_Caption();
    m_frame->Focus_Panel();
    desktop.Set_Window(this);
}

Main_Window::~Main_Window() {
    m_desktop.Set_Window(nullptr);
}

void Main_Window::Add_Panels(Program& program) {
    m_frame->Put(m_form.pnlACARS, new Acars_View(program.panel, m_form, m_frame));
    const auto put_late = [this](Frame_Panel& panel, Late_View::Maker make) {
        m_frame->Put(panel, new Late_View(std::move(make), m_frame));
    };
    put_late(m_form.pnlMSG, [this, &program](QWidget* parent) {
        return new Message_View(program.messages, m_form, parent);
    });
    put_late(m_form.pnlFlightLog, [this, &program](QWidget* parent) {
        return new Flight_Log_View(program.flight_log, m_form, m_desktop, parent);
    });
    put_late(m_form.pnlStats, [this, &program](QWidget* parent) {
        return new Stats_View(program.statistics, m_form, parent);
    });
    put_late(m_form.pnlSettings, [this, &program](QWidget* parent) {
        return new Settings_View(program.settings_panel, m_form, parent);
    });
}

void Main_Window::Add_Dialogs(Program& program) {
    Draw(program.manage_logs, m_desktop, *this);
    Draw(program.convert_log, m_desktop, *this);
    Draw(program.recover, m_desktop, *this);
    Draw(program.settings_panel.airline_lookup, m_desktop, *this);
    Draw(program.world_locations, m_desktop, *this);
    Draw(program.about, m_desktop, *this);
    const auto make_when_open = [this](auto& form, auto make) {
        Keep(*this, form.changed.Connect([this, &form, make, made = false]() mutable {
            if (form.Is_Open() && !std::exchange(made, true))
                Add_Window(make(form, this));
        }));
    };
    make_when_open(program.pirep_editor, [](frmPIREP& form, QWidget* owner) -> QWidget* {
        return new Pirep_View(form, owner);
    });
    make_when_open(program.airport_lookup, [](frmICAO& form, QWidget* owner) -> QWidget* {
        return new Airport_View(form, owner);
    });
}

void Main_Window::Add_Menus() {
    for (const Menu& menu : m_form.Menus()) {
        QMenu* shown = menuBar()->addMenu(To_Q(menu.caption));
        // Which commands there are may change with the airline.
        connect(shown, &QMenu::aboutToShow, shown, [shown, &menu] {
            shown->clear();
            for (Menu_Command* command : frmMain::Shown(menu)) {
                if (command == nullptr)
                    shown->addSeparator();
                else
                    Bind(*shown->addAction(QString()), *command);
            }
        });
    }
}

void Main_Window::Add_Keys() {
    for (const Key_Row& row : key_rows) {
        auto* shortcut = new QShortcut(row.key, this);
        connect(shortcut, &QShortcut::activated, this,
                [this, row] { static_cast<void>(m_form.Key(row.meaning)); });
    }
    const auto step = [this](const QKeySequence& keys, int items) {
        auto* shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, [this, items] { m_form.frame.Step(items); });
    };
    step(Qt::CTRL | Qt::Key_PageDown, +1);
    step(Qt::CTRL | Qt::Key_PageUp, -1);
    for (int position = 1; position <= static_cast<int>(m_form.frame.Items().size()); ++position) {
        const auto digit = static_cast<Qt::Key>(Qt::Key_0 + position);
        auto* shortcut = new QShortcut(Qt::ALT | digit, this);
        connect(shortcut, &QShortcut::activated, this,
                [this, position] { m_frame->Activate(position); });
    }
}

void Main_Window::Add_Status_Bar() {
    // The line of waits takes what the panels leave, so that it never moves them.
    m_wait->setTextFormat(Qt::PlainText);
    m_wait->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_wait->setAccessibleName("Waiting for");
    statusBar()->addWidget(m_wait, 1);
    statusBar()->setSizeGripEnabled(false);
    statusBar()->setContentsMargins(6, 0, 6, 0);
    for (const Status_Row& row : status_rows) {
        auto* value = new Value_Label(row.characters, this);
        Bind(*value, m_form.barStatus[static_cast<std::size_t>(row.panel)], row.name);
        statusBar()->addPermanentWidget(value);
    }
    const auto show = [this] { m_wait->setText(To_Q(m_desktop.Waiting_For())); };
    Keep(*this, m_desktop.wait_changed.Connect(show));
    show();
}

void Main_Window::Add_Window(QWidget* window) {
    m_windows.push_back(window);
    window->installEventFilter(this);
}

/// Where the window was left, as far as that is on a screen that is there.
void Main_Window::Place() {
    const Window_Place& left = m_form.Place();
    resize(Twips_To_Pixels(*this, left.width), Twips_To_Pixels(*this, left.height));
    move(Twips_To_Pixels(*this, left.left), Twips_To_Pixels(*this, left.top));
    Fit_Screen();
    if (left.maximised)
        setWindowState(windowState() | Qt::WindowMaximized);
}

/// Brings all of the window onto its screen, with what the desktop draws around it.
void Main_Window::Fit_Screen() {
    const QScreen* screen = QGuiApplication::screenAt(pos());
    if (screen == nullptr)
        screen = QGuiApplication::primaryScreen();
    const QRect room = screen->availableGeometry();
    // Until it is shown, nobody knows what is around it.
    QSize around = frameGeometry().size() - size();
    if (!isVisible())
        around = QSize(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
    const QSize most = room.size() - around;
    // The status bar shortens its texts rather than hide the window's buttons.
    setMinimumWidth(std::min(statusBar()->sizeHint().width(), most.width()));
    resize(size().boundedTo(most));
    const QPoint last = room.bottomRight() + QPoint(1, 1) -
                        QPoint(width() + around.width(), height() + around.height());
    move(std::clamp(pos().x(), room.left(), std::max(room.left(), last.x())),
         std::clamp(pos().y(), room.top(), std::max(room.top(), last.y())));
    m_own_place = QRect(pos(), size());
}

/// The window stands still: the first time after its frame was drawn around it.
void Main_Window::Settle() {
    if (!isVisible())
        return;
    if (!m_fitted && !isMaximized() && !isMinimized()) {
        m_fitted = true;
        Fit_Screen();
    }
    Note_Place();
}

/// A place that was corrected to fit this screen is not the pilot's choice.
void Main_Window::Note_Place() {
    if (isMinimized())
        return;
    Window_Place place = m_form.Place();
    place.maximised = isMaximized();
    if (!place.maximised && QRect(pos(), size()) != m_own_place) {
        place.left = Pixels_To_Twips(*this, x());
        place.top = Pixels_To_Twips(*this, y());
        place.width = Pixels_To_Twips(*this, width());
        place.height = Pixels_To_Twips(*this, height());
    }
    m_form.Set_Place(place);
}

void Main_Window::Show_Caption() {
    setWindowTitle(To_Q(m_form.Caption()));
}

void Main_Window::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    m_still.start();
}

void Main_Window::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    m_still.start();
}

void Main_Window::changeEvent(QEvent* event) {
    if (event->type() == QEvent::WindowStateChange) {
        m_form.Set_Minimised(isMinimized());
        m_still.start();
    }
    QMainWindow::changeEvent(event);
}

bool Main_Window::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && watched->isWidgetType())
        m_desktop.Put_On_Top(static_cast<QWidget&>(*watched));
    return QMainWindow::eventFilter(watched, event);
}

void Main_Window::closeEvent(QCloseEvent* event) {
    // The program ends behind the window; a step that is running keeps it open until it is over.
    if (!m_ended) {
        event->ignore();
        Note_Place();
        m_form.Form_Unload(ucACARS::Closing::by_pilot);
    }
}

void Main_Window::End() {
    m_ended = true;
    hide();
    m_desktop.End_Dialogs();
    // A window that is open would be closed, which for the response viewer deletes its files.
    for (QWidget* window : m_windows)
        window->hide();
    QCoreApplication::quit();
}

}  // namespace norvane
