#include "logentry/frm_pirep.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <utility>

#include "common/boxes.h"
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

/// Where given up edits of a PIREP are kept: a name of its own that "Select PIREP" offers.
fs::path Place_For_Edits(const fs::path& file) {
    fs::path place;
    for (int number = 1; number == 1 || fs::exists(place); ++number) {
        fs::path name = file.stem();
        name += number == 1 ? std::string("-unsaved") : fmt::format("-unsaved-{}", number);
        place = file.parent_path() / (name += file.extension());
    }
    return place;
}

constexpr std::string_view leave_question =
    "This PIREP has changes that are not saved.  Would you like to save them?";
constexpr std::string_view send_question =
    "This PIREP has changes that are not saved.  Would you like to save them, and send the PIREP "
    "with them?\r\n\r\n\"No\" sends it as it was saved last; your changes stay on the screen.";
constexpr std::string_view delete_question =
    "Would you like to delete this PIREP?  It could not be sent any more; the flight stays in the "
    "flight log.";

}  // namespace

frmPIREP::frmPIREP(Parts parts)
    : m_services(parts.services),
      m_settings(parts.settings),
      m_airline(parts.airline),
      m_response(parts.response),
      m_http(std::move(parts.http)) {
    hypPIREP[select].clicked.Connect([this] { Select_PIREP(); });
    hypPIREP[send].clicked.Connect([this] { Send_PIREP(); });
    hypPIREP[remove].clicked.Connect([this] { Delete_PIREP(); });
    hypPIREP[close].clicked.Connect([this] { Close_Form(); });
    hypPIREP[save].clicked.Connect([this] { Save_PIREP(); });
    Clear();
}

void frmPIREP::Show_Form() {
    if (!std::exchange(m_open, true))
        Clear();
    changed.Emit();
}

void frmPIREP::Close_Form() {
    if (m_open && May_Leave_Edits() && std::exchange(m_open, false))
        changed.Emit();
}

bool frmPIREP::Is_Edited() const {
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row]->txtField.Text() != m_saved_values.at(row))
            return true;
    }
    return false;
}

/// Asks what becomes of edits that are not saved. False when they are to stay where they are.
bool frmPIREP::May_Leave_Edits() {
    if (!Is_Edited())
        return true;
    const Answer answer = Ask(m_services.desktop, leave_question);
    if (answer == Answer::yes)
        return Write_PIREP();
    if (answer != Answer::no)
        return false;
    const fs::path kept = Keep_Edits();
    if (kept.empty())
        return false;
    Tell(m_services.desktop, "Your changes to the PIREP are kept in\r\n\r\n" + From_Path(kept));
    return true;
}

fs::path frmPIREP::Keep_Edits() {
    fs::path kept;
    Guarded(m_services, "frmPIREP.Save_PIREP()", Show::box, [&] {
        if (!Is_Edited())
            return;
        std::string line;
        for (const auto& row : m_rows)
            line.append(row->txtField.Text()).append(bar);
        const fs::path place = Place_For_Edits(m_file);
        Write_File_Atomically(place, line.append(cr_lf));
        kept = place;
        Note_Saved_Values();
    });
    return kept;
}

void frmPIREP::Note_Saved_Values() {
    m_saved_values.clear();
    for (const auto& row : m_rows)
        m_saved_values.push_back(row->txtField.Text());
}

void frmPIREP::Select_PIREP() {
    if (!May_Leave_Edits())
        return;
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
    Note_Saved_Values();
    m_scroll = 0;
    rows_changed.Emit();
}

void frmPIREP::Enable_File_Links() {
    for (const Command command : {send, remove, save})
        hypPIREP[command].Set_Enabled(!m_file.empty() && !m_sending);
}

bool frmPIREP::Read_PIREP_File() {
    return Guarded(m_services, "frmPIREP.Read_PIREP_File()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        const std::string line = First_Line(m_file);
        if (!Contains(line, bar)) {
            throw Run_Error(error_number::other, From_Path(m_file) + " holds no PIREP",
                            "This file holds no PIREP.  Please select one that was saved at the "
                            "end of a flight.");
        }
        Display_Fields(line);
    });
}

void frmPIREP::Display_Fields(std::string_view line) {
    Guarded(m_services, "frmPIREP.Display_Fields()", Show::silent, [&] {
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
    if (!m_file.empty() && Write_PIREP())
        Tell(m_services.desktop, "PIREP Saved");
}

/// True when the file has what is on the screen; what keeps it from that is told.
bool frmPIREP::Write_PIREP() {
    if (m_labels_of != m_airline.Name()) {
        Tell(m_services.desktop,
             "The active airline is another one since this PIREP was opened.  Please select the "
             "PIREP again.",
             Icon::exclamation);
        return false;
    }
    return Guarded(m_services, "frmPIREP.Save_PIREP()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        std::string line;
        for (int i = 0; i <= m_last_label; ++i) {
            if (i >= static_cast<int>(m_rows.size())) {
                throw Run_Error(error_number::subscript_out_of_range,
                                fmt::format("{} has {} values, the airline asks for {}: it was "
                                            "not saved",
                                            From_Path(m_file), m_rows.size(), m_last_label + 1));
            }
            line.append(m_rows[static_cast<std::size_t>(i)]->txtField.Text()).append(bar);
        }
        Keep_Original(m_file, m_rows.size());
        Write_File_Atomically(m_file, line.append(cr_lf));
        Note_Saved_Values();
    });
}

void frmPIREP::Delete_PIREP() {
    Guarded(m_services, "frmPIREP.Delete_PIREP()", Show::box, [&] {
        if (Ask(m_services.desktop, delete_question) != Answer::yes)
            return;
        {
            const Busy_Cursor busy(m_services.desktop);
            if (!fs::remove(m_file))
                return;
            Clear();
        }
        Tell(m_services.desktop, "PIREP Deleted");
    });
}

void frmPIREP::Send_PIREP() {
    if (m_sending || !May_Send())
        return;
    m_sending = true;
    Enable_File_Links();
    std::optional<Run_Error> failure;
    Guarded(m_services, "frmPIREP.Send_PIREP()", Show::box, [&] {
        const Busy_Cursor busy(m_services.desktop);
        const Wait_Notice notice(m_services.desktop, "Contacting the airline's server ...");
        // An entry of its own: the shared one is the flight's.
        clsLogEntry entry(m_services);
        entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(m_file));
        m_response.Contact_Server();
        failure = entry.Send_PIREP(m_settings, m_airline, m_http);
        const bool is_over = m_http.given_up && m_http.given_up();
        if (!failure && !is_over)
            m_response.Show_Response();
        else
            m_response.Close();
        if (is_over)
            failure.reset();
    });
    m_sending = false;
    Enable_File_Links();
    if (failure)
        Tell_PIREP_Failure(m_services.desktop, *failure);
}

/// The file is sent, not the screen: the pilot says what becomes of the difference.
bool frmPIREP::May_Send() {
    if (!Is_Edited())
        return true;
    const Answer answer = Ask(m_services.desktop, send_question);
    return answer == Answer::no || (answer == Answer::yes && Write_PIREP());
}

void frmPIREP::Row_Focused(std::size_t row) {
    const int top = static_cast<int>(row) * row_height;
    constexpr int last_visible = (visible_rows - 1) * row_height;
    Set_Scroll(std::clamp(m_scroll, top - last_visible, top));
}

void frmPIREP::Step(std::size_t row, int rows) {
    const int next = static_cast<int>(row) + rows;
    if (next >= 0 && next < static_cast<int>(m_rows.size()))
        Focus_Moved.Emit(static_cast<std::size_t>(next));
}

int frmPIREP::Scroll_Range() const {
    return std::max(0, (static_cast<int>(m_rows.size()) - visible_rows) * row_height);
}

void frmPIREP::Set_Scroll(int value) {
    const int kept = std::clamp(value, 0, Scroll_Range());
    if (std::exchange(m_scroll, kept) != kept)
        scrolled.Emit();
}

}  // namespace norvane
