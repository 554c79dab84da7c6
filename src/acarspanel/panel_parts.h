#pragma once
// Who the ACARS panel and its parts work with.

#include "net/http_client.h"

namespace norvane {

class clsAppSettings;
class clsLogEntry;
class clsVASettings;
class frmResponse;
class Outbox;
struct Services;

/// All of it lives longer than the panel.
struct Panel_Parts {
    Services& services;
    const clsAppSettings& settings;
    clsVASettings& airline;
    clsLogEntry& log_entry;
    frmResponse& response;
    Outbox& outbox;
    Http_Options http;
};

}  // namespace norvane
