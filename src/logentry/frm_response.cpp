#include "logentry/frm_response.h"

#include "common/file_writer.h"
#include "common/line_reader.h"
#include "common/log_error.h"
#include "common/services.h"
#include "common/text.h"

namespace norvane {

namespace {

constexpr std::string_view contact_file = "cs";
/// Written by the network client as well.
constexpr std::string_view answer_file = "sr";
constexpr std::string_view contacting = "Contacting Server ...";

}  // namespace

frmResponse::frmResponse(Services& services) : m_services(services) {
    hypClose.clicked.Connect([this] { Close_And_Delete(); });
}

void frmResponse::Contact_Server() {
    Guarded(m_services, "frmResponse.Contact_Server()", Show::box, [&] {
        Write_File(m_services.program_directory / contact_file,
                   std::string(contacting) + std::string(cr_lf));
        Open(contact_file);
    });
}

void frmResponse::Show_Response() {
    // What the viewer showed until now would belong to a post that is still under way.
    if (!Guarded(m_services, "frmResponse.Show_Response()", Show::box, [&] { Open(answer_file); }))
        Close();
}

void frmResponse::Show_Answer(std::string_view answer) {
    if (Guarded(m_services, "frmResponse.Show_Answer()", Show::silent, [&] {
            Write_File(m_services.program_directory / answer_file,
                       Trim(answer) + std::string(cr_lf));
        }))
        Show_Response();
    else
        Close();
}

void frmResponse::Open(std::string_view file) {
    m_page = Read_File(m_services.program_directory / file);
    m_open = true;
    changed.Emit();
}

void frmResponse::Close() {
    m_open = false;
    changed.Emit();
}

void frmResponse::Close_And_Delete() {
    for (const std::string_view file : {answer_file, contact_file}) {
        Guarded(m_services, "frmResponse.hypClose_Click()", Show::box,
                [&] { std::filesystem::remove(m_services.program_directory / file); });
    }
    Close();
}

}  // namespace norvane
