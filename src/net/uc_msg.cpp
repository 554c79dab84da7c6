#include "net/uc_msg.h"

#include <utility>

#include "acars/cls_acars.h"
#include "common/services.h"

namespace norvane {

ucMSG::ucMSG(Parts parts)
    : tmrPost(parts.services.desktop.Timers(), std::chrono::milliseconds(1)),
      m_services(parts.services),
      m_settings(parts.settings),
      m_airline(parts.airline),
      m_http(std::move(parts.http)) {
    Enable_Input(false);
}

ucMSG::~ucMSG() {
    for (sigc::connection& connection : m_engine_connections)
        connection.disconnect();
}

void ucMSG::Set_ACARS(clsACARS& engine) {
    for (sigc::connection& connection : std::exchange(m_engine_connections, {}))
        connection.disconnect();
    m_objACARS = &engine;
}

void ucMSG::Close() {
    tmrPost.Set_Enabled(false);
    Enable_Input(false);
}

void ucMSG::Enable_Input(bool enabled) {
    txtCommand.Set_Enabled(enabled);
    hypComment.Set_Enabled(enabled);
    hypWX.Set_Enabled(enabled);
    if (!enabled)
        txtCommand.Set_Text({});
}

}  // namespace norvane
