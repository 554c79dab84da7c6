#pragma once
// Prints the flight log's grid when its panel asks for it: page setup, preview, printing, with the
// desktop's dialogs. One printer with its page is kept as long as the view lives. Without any
// printer what is printed goes into a PDF file.

#include <QObject>
#include <QPrinter>
#include <QWidget>
#include <memory>

#include "logpanel/uc_flight_log.h"

namespace norvane {

class Qt_Desktop;

class Grid_Printing : public QObject {
  public:
    /// Both live longer. `parent` is the window that dialogs stand over.
    Grid_Printing(ucFlightLog& log, Qt_Desktop& desktop, QWidget& parent);

  private:
    /// Ready for a new job: all pages, once, from the first; the page as it was set up.
    [[nodiscard]] QPrinter& Printer(const Print_Job& job);
    void Set_Page_Up(const Print_Job& job);
    void Preview(const Print_Job& job);
    void Print(const Print_Job& job);
    /// False when it failed, not when the pilot ended it.
    bool Print_All(const Print_Job& job, QPrinter& printer);

    ucFlightLog& m_log;
    Qt_Desktop& m_desktop;
    QWidget& m_parent;
    /// Made when it is needed: looking for printers takes its time.
    std::unique_ptr<QPrinter> m_printer;
    /// Where the last file went, or where the pilot keeps documents.
    QString m_directory;
};

}  // namespace norvane
