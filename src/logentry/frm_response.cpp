#include "logentry/frm_response.h"

#include "common/services.h"

namespace norvane {

frmResponse::frmResponse(Services& services) : m_services(services) {}

void frmResponse::Close() {
    m_open = false;
    changed.emit();
}

}  // namespace norvane
