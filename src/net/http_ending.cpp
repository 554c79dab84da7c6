#include "net/http_ending.h"

#include <curl/curl.h>

namespace norvane {

bool Is_Answered(const Http_Ending& ending) {
    switch (ending.result) {
        case CURLE_OK:
        case CURLE_OPERATION_TIMEDOUT:
        case CURLE_WRITE_ERROR:  // the limit of bytes
            return true;
        case CURLE_PARTIAL_FILE:
            return ending.verb == Http_Verb::get || ending.has_body;
        case CURLE_RECV_ERROR:
            // Many servers close an encrypted connection without signing off, which some builds of
            // the library take for an error. The close is the only end of an answer that stated no
            // length.
            return ending.has_body && !ending.states_length && ending.system_error == 0;
        default:
            return false;
    }
}

}  // namespace norvane
