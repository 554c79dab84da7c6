#include "logentry/frm_pirep.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <utility>

#include "common/code_page.h"
#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"
#include "config/cls_va_settings.h"
#include "logentry/cls_log_entry.h"
#include "logentry/frm_response.h"

namespace norvane {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view bar(&field_separator, 1);

std::string First_Line(const fs::path& file) {
    const std::string content = Read_File(file);
    Line_Reader lines(content);
    return lines.Next() ? std::string(lines.Line()) : std::string();
}

/// Keeps the file beside itself before a save takes values away from it: at the first save, and
/// when a later flight has written all its values under the same name.
void Keep_Original(const fs::path& file, std::size_t saved_values) {
    fs::path kept = file;
    kept.replace_extension(".bak");
    if (kept == file)
        kept += ".bak";
    if (!fs::exists(kept) || Split(First_Line(file), field_separator).size() > saved_values + 1)
        Copy_File(file, kept);
}

void Say(Services& services, std::string_view text, Icon icon) {
    services.desktop.Show_Message(
        {std::string(text), std::string(product_name), icon, Buttons::ok});
}

}  // namespace

frmPIREP::frmPIREP(Parts parts)
    : m_services(parts.services),
      m_settings(parts.settings),
      m_airline(parts.airline),
      m_response(parts.response),
      m_http(std::move(parts.http)) {
    hypPIREP[select].clicked.connect([this] { Select_PIREP(); });
    hypPIREP[send].clicked.connect([this] { Send_PIREP(); });
    hypPIREP[remove].clicked.connect([this] { Delete_PIREP(); });
    hypPIREP[close].clicked.connect([this] { Close_Form(); });
    hypPIREP[save].clicked.connect([this] { Save_PIREP(); });
    Clear();
}

void frmPIREP::Show_Form() {
    if (!std::exchange(m_open, true))
        Clear();
    changed.emit();
}

void frmPIREP::Close_Form() {
    if (std::exchange(m_open, false))
        changed.emit();
}

void frmPIREP::Select_PIREP() {
    const fs::path chosen = m_services.desktop.Choose_File(
        {"Select PIREP", "Text Files (*.txt)|*.txt", m_services.program_directory / "reports"});
    if (chosen.empty())
        return;
    Clear();
    m_file = chosen;
    lblFile.Set_Text(From_Path(m_file));
    if (Read_PIREP_File())
        Enable_File_Links();
    else
        Clear();
}

void frmPIREP::Clear() {
    m_file.clear();
    lblFile.Set_Text({});
    Enable_File_Links();
    Take_Rows({});
}

/// The old rows live until the new ones are drawn.
void frmPIREP::Take_Rows(std::vector<std::unique_ptr<Row>> rows) {
    m_rows.swap(rows);
    m_scroll = 0;
    rows_changed.emit();
}

void frmPIREP::Enable_File_Links() {
    for (const Command command : {send, remove, save})
        hypPIREP[command].Set_Enabled(!m_file.empty() && !m_sending);
}

bool frmPIREP::Read_PIREP_File() {
    return Guarded(m_services, "frmPIREP.Read_PIREP_File()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        Display_Fields(First_Line(m_file));
    });
}

void frmPIREP::Display_Fields(std::string_view line) {
    Guarded(m_services, "frmPIREP.Display_Fields()", Show::box, [&] {
        const auto values = Split(line, field_separator);
        m_last_label = m_airline.PIREP_Field_Names_Ubound();
        m_labels_of = m_airline.Name();
        const int last = std::min(m_last_label, static_cast<int>(values.size()) - 1);
        std::vector<std::unique_ptr<Row>> rows;
        for (int i = 0; i <= last; ++i) {
            auto row = std::make_unique<Row>();
            row->lblField.Set_Text(m_airline.PIREP_Field_Names(i));
            row->txtField.Set_Text(values[static_cast<std::size_t>(i)]);
            rows.push_back(std::move(row));
        }
        Take_Rows(std::move(rows));
    });
}

void frmPIREP::Save_PIREP() {
    Guarded(m_services, "frmPIREP.Save_PIREP()", Show::box, [&] {
        if (m_file.empty())
            return;
        if (m_labels_of != m_airline.Name()) {
            Say(m_services,
                "The active airline is another one since this PIREP was opened.  Please select the "
                "PIREP again.",
                Icon::exclamation);
            return;
        }
        {
            const Busy_Cursor busy(m_services.desktop);
            std::string line;
            for (int i = 0; i <= m_last_label; ++i) {
                if (i >= static_cast<int>(m_rows.size())) {
                    throw Run_Error(
                        error_number::subscript_out_of_range,
                        fmt::format("{} has {} values, the airline asks for {}: it was "
                                    "not saved",
                                    From_Path(m_file), m_rows.size(), m_last_label + 1));
                }
                line.append(m_rows[static_cast<std::size_t>(i)]->txtField.Text()).append(bar);
            }
            Keep_Original(m_file, m_rows.size());
            Write_File_Atomically(m_file, line.append(cr_lf));
        }
        Say(m_services, "PIREP Saved", Icon::information);
    });
}

void frmPIREP::Delete_PIREP() {
    Guarded(m_services, "frmPIREP.Delete_PIREP()", Show::box, [&] {
        {
            const Busy_Cursor busy(m_services.desktop);
            if (!fs::remove(m_file))
                return;
            Clear();
        }
        Say(m_services, "PIREP Deleted", Icon::information);
    });
}

void frmPIREP::Send_PIREP() {
    if (std::exchange(m_sending, true))
        return;
    Enable_File_Links();
    Guarded(m_services, "frmPIREP.Send_PIREP()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        const Wait_Notice notice(m_services.desktop, "Contacting the airline's server ...");
        // An entry of its own: the shared one is the flight's.
        clsLogEntry entry(m_services);
        entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(m_file));
        m_response.Contact_Server();
        const bool is_answered = entry.Send_PIREP(m_settings, m_airline, m_http);
        const bool is_over = m_http.given_up && m_http.given_up();
        if (is_answered && !is_over)
            m_response.Show_Response();
        else
            m_response.Close();
    });
    m_sending = false;
    Enable_File_Links();
}

void frmPIREP::Row_Focused(std::size_t row) {
    const int top = static_cast<int>(row) * row_height;
    constexpr int last_visible = (visible_rows - 1) * row_height;
    Set_Scroll(std::clamp(m_scroll, top - last_visible, top));
}

void frmPIREP::Step(std::size_t row, int rows) {
    const int next = static_cast<int>(row) + rows;
    if (next >= 0 && next < static_cast<int>(m_rows.size()))
        Focus_Moved.emit(static_cast<std::size_t>(next));
}

int frmPIREP::Scroll_Range() const {
    return std::max(0, (static_cast<int>(m_rows.size()) - visible_rows) * row_height);
}

void frmPIREP::Set_Scroll(int value) {
    const int kept = std::clamp(value, 0, Scroll_Range());
    if (std::exchange(m_scroll, kept) != kept)
        scrolled.emit();
}

}  // namespace norvane
