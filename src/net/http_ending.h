#pragma once
// What the end of a connection makes of an answer that had begun. Used by the HTTP client.

#include "net/http_address.h"

namespace norvane {

struct Http_Ending {
    /// As libcurl tells it.
    int result = 0;
    Http_Verb verb = Http_Verb::get;
    bool has_body = false;
    /// By its size or by its pieces, so that its end can be missed.
    bool states_length = false;
    /// The system's own error, as of a reset; 0 for none.
    long system_error = 0;
};

/// Once the status line came: whether what was read of the answer counts as the answer.
[[nodiscard]] bool Is_Answered(const Http_Ending& ending);

}  // namespace norvane
