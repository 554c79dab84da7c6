#include "cli/heard_error_log.h"

#include <string_view>
#include <utility>

#include "common/text.h"

namespace norvane {

void Heard_Error_Log::Append(const std::string& entry) {
    constexpr std::string_view mark = "Error Description: ";
    const std::size_t place = entry.find(mark);
    if (place != std::string::npos) {
        std::string reason = Trim(Replace_All(entry.substr(place + mark.size()), cr_lf, " "));
        if (m_reasons.empty() || m_reasons.back() != reason)
            m_reasons.push_back(std::move(reason));
    }
    m_log.Append(entry);
}

}  // namespace norvane
