#pragma once
// The PIREP editor "Send PIREP": opens a saved PIREP file, shows its values under the active
// airline's labels, saves corrections, deletes the file, or sends it to the airline. A plain model
// of a window that does not block; owned by the program. Lengths are in twips, 1/1440 inch.

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/controls.h"
#include "common/signal.h"
#include "net/http_client.h"

namespace norvane {

struct Services;
class clsAppSettings;
class clsVASettings;
class frmResponse;

class frmPIREP {
  public:
    static constexpr std::string_view title = "Send PIREP";
    static constexpr int row_height = 360;
    static constexpr int visible_rows = 11;

    /// Places in `hypPIREP`.
    enum Command { select, send, remove, close, save };

    /// Who the editor works with, all of it longer lived.
    struct Parts {
        Services& services;
        const clsAppSettings& settings;
        const clsVASettings& airline;
        frmResponse& response;
        Http_Options http;
    };

    explicit frmPIREP(Parts parts);
    frmPIREP(const frmPIREP&) = delete;
    frmPIREP& operator=(const frmPIREP&) = delete;

    /// Opens the window with no file; one that is open comes to the front as it is.
    void Show_Form();
    /// Edits that are not saved are asked about first, here and before another PIREP is selected.
    void Close_Form();
    /// Writes edits that are not saved to a file of their own beside the PIREP, whose name is
    /// returned; empty when there are none or that failed (reported).
    std::filesystem::path Keep_Edits();
    [[nodiscard]] bool Is_Open() const { return m_open; }
    /// Opened, closed, or asked for again while it is open.
    Signal<> changed;

    /// One value under its label.
    struct Row {
        Label lblField;
        Text_Box txtField;
    };
    /// In the file's order; none when no file is open.
    [[nodiscard]] const std::vector<std::unique_ptr<Row>>& Rows() const { return m_rows; }
    /// The rows were made anew. The view has forgotten the old ones when it returns.
    Signal<> rows_changed;

    /// The row got the focus: the view follows it.
    void Row_Focused(std::size_t row);
    /// The Up (-1) or Down (+1) key in a row's field.
    void Step(std::size_t row, int rows);
    /// The focus belongs to this row's field.
    Signal<std::size_t> Focus_Moved;

    /// How far the rows can be moved up; 0 where all are seen.
    [[nodiscard]] int Scroll_Range() const;
    [[nodiscard]] int Scroll() const { return m_scroll; }
    /// Moves the rows up by `value`, kept within the range.
    void Set_Scroll(int value);
    Signal<> scrolled;

    /// Path of the open file.
    Label lblFile;
    std::array<Link, 5> hypPIREP{Link("Select PIREP"), Link("Send PIREP"), Link("Delete PIREP"),
                                 Link("Close"), Link("Save PIREP")};

  private:
    void Select_PIREP();
    void Clear();
    void Take_Rows(std::vector<std::unique_ptr<Row>> rows);
    bool Read_PIREP_File();
    void Display_Fields(std::string_view line);
    [[nodiscard]] bool Is_Edited() const;
    bool May_Leave_Edits();
    bool May_Send();
    void Note_Saved_Values();
    void Save_PIREP();
    bool Write_PIREP();
    void Delete_PIREP();
    void Send_PIREP();
    void Enable_File_Links();

    Services& m_services;
    const clsAppSettings& m_settings;
    const clsVASettings& m_airline;
    frmResponse& m_response;
    Http_Options m_http;
    std::filesystem::path m_file;
    std::vector<std::unique_ptr<Row>> m_rows;
    /// What the rows showed when they were last read or saved.
    std::vector<std::string> m_saved_values;
    /// The airline whose labels the rows have, and the index of its last one.
    std::string m_labels_of;
    int m_last_label = -1;
    int m_scroll = 0;
    bool m_sending = false;
    bool m_open = false;
};

}  // namespace norvane
