#pragma once
// A panel whose weather, network data and airline are a server of the test. While a request is
// running and the server has it, something else can happen.

#include <atomic>
#include <cstdlib>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "acarspanel/panel_world.h"
#include "servers/test_servers.h"

namespace norvane::test {

class Network_World : public Panel_World {
  protected:
    Network_World() {
        ::setenv("no_proxy", "*", 1);
        const auto serve = [this](const httplib::Request& in, httplib::Response& out) {
            {
                const std::lock_guard guard(m_lock);
                m_asked.push_back(in.target + (in.method == "POST" ? " " + in.body : ""));
                out.set_content(m_pages[in.target], "text/plain");
            }
            ++m_requests;
            while (m_holds)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
        };
        server->Get(".*", serve);
        server->Post(".*", serve);
        server.Start();
        Write("bin/url.cfg", "[NOAA]\r\nURL=" + server.Host() +
                                 "\r\nMETAR=/wx/\r\n[VATSIM]\r\nURL=" + server.Host() +
                                 "\r\nDATA=/data\r\n");
        http.given_up = [this] {
            const int seen = m_requests;
            if (seen != m_handled && m_meanwhile) {
                m_handled = seen;
                std::exchange(m_meanwhile, nullptr)();
                m_holds = false;
            }
            return false;
        };
    }
    /// What was begun with `While_Next_Request_Runs` must have come.
    ~Network_World() override {
        m_holds = false;
        EXPECT_FALSE(m_meanwhile);
    }

    void Set_Page(const std::string& target, const std::string& page) {
        const std::lock_guard guard(m_lock);
        m_pages[target] = page;
    }
    /// What was asked since the last call.
    std::vector<std::string> Take_Asked() {
        const std::lock_guard guard(m_lock);
        return std::exchange(m_asked, {});
    }
    /// The next request stays unanswered until `happens` is over.
    void While_Next_Request_Runs(std::function<void()> happens) {
        m_handled = m_requests;
        m_holds = true;
        m_meanwhile = std::move(happens);
    }

  private:
    std::mutex m_lock;
    std::map<std::string, std::string> m_pages;
    std::vector<std::string> m_asked;
    std::atomic<int> m_requests = 0;
    std::atomic<bool> m_holds = false;
    int m_handled = 0;
    std::function<void()> m_meanwhile;

  protected:
    Web_Server server;
};

}  // namespace norvane::test
