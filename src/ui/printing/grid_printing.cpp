#include "ui/printing/grid_printing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QPageRanges>
#include <QPageSetupDialog>
#include <QPaintEngine>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QProgressDialog>
#include <QStandardPaths>
#include <QTimer>
#include <algorithm>
#include <exception>
#include <filesystem>
#include <numeric>
#include <system_error>
#include <vector>

#include "common/run_error.h"
#include "ui/controls/bind.h"
#include "ui/printing/log_printer.h"
#include "ui/window/qt_desktop.h"
#include "ui/window/qt_text.h"

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

/// The file that is printed into, if it is one, stands under another name until it is whole: what
/// was there before is not given up for half a log.
class File_In_Making {
  public:
    explicit File_In_Making(QPrinter& printer) : m_printer(printer) {
        if (printer.outputFormat() != QPrinter::PdfFormat)
            return;
        m_name = printer.outputFileName();
        const QFileInfo place(m_name);
        m_making = place.dir().filePath("." + place.completeBaseName() + ".part.pdf");
        printer.setOutputFileName(m_making);
    }
    ~File_In_Making() { Give_Back(); }
    File_In_Making(const File_In_Making&) = delete;
    File_In_Making& operator=(const File_In_Making&) = delete;

    /// Gives the file its name; false when it did not become whole, on a full disk for example.
    bool Keep() {
        std::error_code failure;
        if (Is_Whole())
            std::filesystem::rename(Path_From_Q(m_making), Path_From_Q(m_name), failure);
        else
            failure = std::make_error_code(std::errc::io_error);
        Give_Back();
        return !failure;
    }

  private:
    [[nodiscard]] bool Is_Whole() const {
        constexpr qint64 end_size = 32;
        QFile file(m_making);
        return file.open(QIODevice::ReadOnly) && file.size() > end_size &&
               file.seek(file.size() - end_size) && file.readAll().contains("%%EOF");
    }
    void Give_Back() {
        if (m_making.isEmpty())
            return;
        QFile::remove(m_making);
        m_making.clear();
        m_printer.setOutputFileName(m_name);
    }

    QPrinter& m_printer;
    QString m_name;
    QString m_making;
};

}  // namespace

Grid_Printing::Grid_Printing(ucFlightLog& log, Qt_Desktop& desktop, QWidget& parent)
    : QObject(&parent), m_log(log), m_desktop(desktop), m_parent(parent) {
    Keep(*this, log.page_setup_wanted.Connect([this](const Print_Job& job) { Set_Page_Up(job); }));
    Keep(*this, log.preview_wanted.Connect([this](const Print_Job& job) { Preview(job); }));
    Keep(*this, log.print_wanted.Connect([this](const Print_Job& job) { Print(job); }));
}

QPrinter& Grid_Printing::Printer(const Print_Job& job) {
    if (!m_printer) {
        m_printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        m_printer->setPageOrientation(QPageLayout::Landscape);
        m_directory = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
        if (!QFileInfo(m_directory).isDir())
            m_directory = QDir::homePath();
    }
    const QString name = To_Q(job.file_name);
    m_printer->setDocName(name);
    m_printer->setPrintRange(QPrinter::AllPages);
    m_printer->setPageRanges({});
    m_printer->setCopyCount(1);
    m_printer->setPageOrder(QPrinter::FirstPageFirst);
    if (m_printer->outputFormat() == QPrinter::PdfFormat)
        m_printer->setOutputFileName(QDir(m_directory).filePath(name + ".pdf"));
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
    std::exception_ptr failure;
    const auto paint = [&](QPrinter& printer) {
        // The preview's own button prints through this too.
        if (printer.paintEngine()->type() != QPaintEngine::Picture) {
            printed = Print_All(job, printer);
            return;
        }
        Log_Printer pages(m_log.Table(), m_log.Layout(), To_Q(job.heading), printer);
        std::vector<int> shown(
            static_cast<std::size_t>(std::min(pages.Pages(), most_pages_previewed)));
        std::iota(shown.begin(), shown.end(), 1);
        dialog.setWindowTitle(pages.Pages() <= most_pages_previewed
                                  ? QString("Print Preview")
                                  : QString("Print Preview (the first %1 of %L2 pages)")
                                        .arg(most_pages_previewed)
                                        .arg(pages.Pages()));
        pages.Print(shown, [](int) { return true; });
    };
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this, [&](QPrinter* printer) {
        // No failure may pass through the dialog's event loop.
        try {
            paint(*printer);
        } catch (...) {
            failure = std::current_exception();
            // Its window may just be about to open.
            QTimer::singleShot(0, &dialog, &QDialog::reject);
        }
    });
    m_desktop.Run_Dialog(dialog);
    if (failure)
        std::rethrow_exception(failure);
    Check(printed);
}

void Grid_Printing::Print(const Print_Job& job) {
    QPrinter& printer = Printer(job);
    QPrintDialog dialog(&printer, &m_parent);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange);
    // With a printer at hand the dialog makes up a name for its "Print to File" alone.
    if (auto* file = dialog.findChild<QLineEdit*>("filename"))
        file->setText(QDir(m_directory).filePath(To_Q(job.file_name) + ".pdf"));
    // It looks for the range that is typed at the printer before it has put it there.
    if (auto* range = dialog.findChild<QLineEdit*>("pagesLineEdit")) {
        connect(range, &QLineEdit::textChanged, &dialog, [&printer](const QString& text) {
            printer.setPageRanges(QPageRanges::fromString(text));
        });
    }
    if (m_desktop.Run_Dialog(dialog))
        Check(Print_All(job, printer));
}

bool Grid_Printing::Print_All(const Print_Job& job, QPrinter& printer) {
    Log_Printer pages(m_log.Table(), m_log.Layout(), To_Q(job.heading), printer);
    const std::vector<int> wanted = Pages_To_Paint(printer, pages.Pages());
    File_In_Making file(printer);
    QProgressDialog progress("Printing the flight log", "Cancel", 0,
                             static_cast<int>(wanted.size()) + 1, &m_parent);
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
            printed = pages.Print(wanted, [&](int painted) {
                progress.setValue(painted + 1);
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
    if (printed && printer.outputFormat() == QPrinter::PdfFormat) {
        printed = file.Keep();
        m_directory = QFileInfo(printer.outputFileName()).path();
    }
    return printed || ended;
}

}  // namespace norvane
