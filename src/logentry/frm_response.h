#pragma once
// The response viewer: what the airline's PIREP script answered, or that it is being contacted. A
// plain model; the window shows `Page` without running or loading anything. Owned by the program.

#include <string>
#include <string_view>

#include "common/controls.h"
#include "common/signal.h"

namespace norvane {

struct Services;

class frmResponse {
  public:
    static constexpr std::string_view title = "Response from Server";

    explicit frmResponse(Services& services);
    frmResponse(const frmResponse&) = delete;
    frmResponse& operator=(const frmResponse&) = delete;

    /// Opens the viewer with the file "cs", written anew: "Contacting Server ...".
    void Contact_Server();
    /// Opens the viewer with the file "sr", the script's last answer.
    void Show_Response();
    /// Keeps an answer as the script's last one, and opens the viewer with it.
    void Show_Answer(std::string_view answer);
    /// Closes the viewer and keeps its files, as after a post that failed.
    void Close();

    [[nodiscard]] bool Is_Open() const { return m_open; }
    /// The bytes of the file shown: normally a page of the server's, in whatever encoding it has.
    [[nodiscard]] const std::string& Page() const { return m_page; }
    /// Opened, closed, or another page.
    Signal<> changed;

    /// Deletes "sr" and "cs" and closes the viewer; so does closing its window.
    Link hypClose{"Close"};

  private:
    void Open(std::string_view file);
    void Close_And_Delete();

    Services& m_services;
    bool m_open = false;
    std::string m_page;
};

}  // namespace norvane
