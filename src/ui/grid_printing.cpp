#include "ui/grid_printing.h"

#include <QPageSetupDialog>
#include <QPaintEngine>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QProgressDialog>
#include <QTimer>
#include <algorithm>
#include <exception>

#include "common/run_error.h"
#include "ui/bind.h"
#include "ui/log_printer.h"
#include "ui/qt_desktop.h"
#include "ui/qt_text.h"

namespace norvane {

namespace {

/// A preview holds all its pages in memory.
constexpr int most_pages_previewed = 200;
/// Of the window, for the preview.
constexpr double preview_size = 0.9;

void Check(bool printed) {
    if (!printed)
        throw Run_Error(error_number::other, "The printer, or the file, cannot be written to");
}

}  // namespace

Grid_Printing::Grid_Printing(ucFlightLog& log, Qt_Desktop& desktop, QWidget& parent)
    : QObject(&parent), m_log(log), m_desktop(desktop), m_parent(parent) {
    Keep(*this, log.page_setup_wanted.connect([this](const Print_Job& job) { Set_Page_Up(job); }));
    Keep(*this, log.preview_wanted.connect([this](const Print_Job& job) { Preview(job); }));
    Keep(*this, log.print_wanted.connect([this](const Print_Job& job) { Print(job); }));
}

QPrinter& Grid_Printing::Printer(const Print_Job& job) {
    if (!m_printer)
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    m_printer->setDocName(To_Q(job.heading));
    if (job.default_page)
        m_printer->setPageOrientation(QPageLayout::Landscape);
    return *m_printer;
}

void Grid_Printing::Set_Page_Up(const Print_Job& job) {
    QPageSetupDialog dialog(&Printer(job), &m_parent);
    m_desktop.Run_Dialog(dialog);
}

void Grid_Printing::Preview(const Print_Job& job) {
    QPrintPreviewDialog dialog(&Printer(job), &m_parent);
    dialog.resize(m_parent.window()->size() * preview_size);
    bool printed = true;
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this, [&](QPrinter* printer) {
        // The preview's own button prints through this too.
        if (printer->paintEngine()->type() != QPaintEngine::Picture) {
            printed = Print_All(job, *printer);
            return;
        }
        Log_Printer pages(m_log.Table(), m_log.Layout(), To_Q(job.heading), *printer);
        const int shown = std::min(pages.Pages(), most_pages_previewed);
        dialog.setWindowTitle(shown == pages.Pages()
                                  ? QString("Print Preview")
                                  : QString("Print Preview (the first %1 of %L2 pages)")
                                        .arg(shown)
                                        .arg(pages.Pages()));
        pages.Print(1, shown, [](int) { return true; });
    });
    m_desktop.Run_Dialog(dialog);
    Check(printed);
}

void Grid_Printing::Print(const Print_Job& job) {
    QPrinter& printer = Printer(job);
    QPrintDialog dialog(&printer, &m_parent);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    if (m_desktop.Run_Dialog(dialog))
        Check(Print_All(job, printer));
}

bool Grid_Printing::Print_All(const Print_Job& job, QPrinter& printer) {
    Log_Printer pages(m_log.Table(), m_log.Layout(), To_Q(job.heading), printer);
    const bool ranged = printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0;
    const int first = ranged ? std::min(printer.fromPage(), pages.Pages()) : 1;
    const int last = ranged ? std::clamp(printer.toPage(), first, pages.Pages()) : pages.Pages();
    QProgressDialog progress("Printing the flight log", "Cancel", first, last + 1, &m_parent);
    // Only once it counts as shown does it let events through.
    progress.setMinimumDuration(0);
    // The end of the program closes it as it does every dialog, and with it ends the printing.
    bool ended = true;
    connect(&progress, &QDialog::rejected, &progress, &QProgressDialog::cancel);
    bool printed = false;
    std::exception_ptr failure;
    QTimer::singleShot(0, &progress, [&] {
        // No failure may pass through the dialog's event loop.
        try {
            printed = pages.Print(first, last, [&](int page) {
                progress.setValue(page);
                return !progress.wasCanceled();
            });
        } catch (...) {
            failure = std::current_exception();
        }
        ended = progress.wasCanceled();
        progress.reset();
    });
    m_desktop.Run_Dialog(progress);
    if (failure)
        std::rethrow_exception(failure);
    return printed || ended;
}

}  // namespace norvane
