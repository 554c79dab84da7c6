#include "common/services.h"

namespace norvane {

Services With_Error_Log(const Services& outside, Error_Log& error_log) {
    return {outside.desktop,  outside.settings,          outside.clock,        error_log,
            outside.regional, outside.program_directory, outside.path_mappings};
}

Wait_Notice::Wait_Notice(Desktop& desktop, std::string_view what)
    : m_desktop(desktop), m_place(desktop.m_waits.emplace(desktop.m_waits.end(), what)) {
    m_desktop.Wait_Changed();
}

Wait_Notice::~Wait_Notice() {
    m_desktop.m_waits.erase(m_place);
    m_desktop.Wait_Changed();
}

std::string Settings_Store::Get(std::string_view section, std::string_view key,
                                std::string_view otherwise) {
    auto found = Find(section, key);
    return found ? *std::move(found) : std::string(otherwise);
}

void Settings_Batch::Commit() {
    if (!m_open)
        return;
    m_open = false;
    m_store.Commit();
}

Settings_Batch::~Settings_Batch() {
    try {
        Commit();
    } catch (...) {
        // The block that failed is already being reported; a second failure has nobody to tell.
        m_open = false;
    }
}

}  // namespace norvane
