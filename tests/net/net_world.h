#pragma once
// A pilot with settings and an airline, sources that lead to a server of the test, and a fresh
// network client for each operation, as its users make it.

#include <cstdlib>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

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

    clsAppSettings settings{services};
    clsVASettings airline{services};
    Http_Options options;
};

/// Every source asks one server, each kind of report under its own path.
class Pages_World : public Net_World {
  protected:
    Pages_World() {
        const auto serve = [this](const httplib::Request& in, httplib::Response& out) {
            const std::lock_guard guard(m_lock);
            m_asked.push_back(in.target + (in.method == "POST" ? " " + in.body : ""));
            out.set_content(pages[in.path], "text/html");
        };
        server->Get(".*", serve);
        server->Post(".*", serve);
        server.Start();
        std::string lines;
        for (const std::string name : {"ADDS", "NOAA", "VATSIM", "OTHER"}) {
            lines.append("[" + name + "]\r\nURL=" + server.Host() + "\r\n");
            for (const std::string kind : {"METAR", "TAF", "METAR_TAF"})
                lines.append(kind + "=/" + name + "/" + kind + "?id=\r\n");
            lines.append("DATA=/" + name + "/DATA\r\n");
        }
        Write("bin/url.cfg", lines);
    }

    std::vector<std::string> Take_Asked() {
        const std::lock_guard guard(m_lock);
        return std::exchange(m_asked, {});
    }

    std::map<std::string, std::string> pages;

  private:
    std::mutex m_lock;
    std::vector<std::string> m_asked;

  protected:
    Web_Server server;
};

}  // namespace norvane::test
