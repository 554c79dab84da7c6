#pragma once
// The error log of a command whose operations report their failures instead of raising them: what
// they report is passed on and kept, so that the command can tell it and fail.

#include <string>
#include <vector>

#include "common/services.h"

namespace norvane {

class Heard_Error_Log : public Error_Log {
  public:
    explicit Heard_Error_Log(Error_Log& log) : m_log(log) {}

    void Append(const std::string& entry) override;
    /// The descriptions of what failed, each on one line; one that comes back at once counts once.
    [[nodiscard]] const std::vector<std::string>& Reasons() const { return m_reasons; }

  private:
    Error_Log& m_log;
    std::vector<std::string> m_reasons;
};

}  // namespace norvane
