#pragma once
// A pilot with settings and an airline, sources that lead to a server of the test, and a fresh
// network client for each operation, as its users make it.

#include <cstdlib>
#include <string>
#include <utility>

#include "config/cls_app_settings.h"
#include "config/cls_va_settings.h"
#include "net/cls_win_inet.h"
#include "servers/test_servers.h"
#include "support/test_world.h"

namespace norvane::test {

class Net_World : public Test_World {
  protected:
    Net_World() { ::setenv("no_proxy", "*", 1); }

    clsWinInet Client() { return {services, settings, airline, options}; }
    /// Every source asks `host`, each kind of report under its own path.
    void Sources_At(const std::string& host) {
        std::string lines;
        for (const char* name : {"ADDS", "NOAA", "VATSIM", "OTHER"}) {
            const std::string path = "/" + std::string(name);
            lines += "[" + std::string(name) + "]\r\nURL=" + host + "\r\nMETAR=" + path +
                     "/metar?id=\r\nTAF=" + path + "/taf?id=\r\nMETAR_TAF=" + path +
                     "/both?id=\r\nDATA=" + path + "/data\r\n";
        }
        Write("bin/url.cfg", lines);
    }

    clsAppSettings settings{services};
    clsVASettings airline{services};
    Http_Options options;
};

}  // namespace norvane::test
