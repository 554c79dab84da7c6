// An airline's answer of any bytes in the window that shows it: laid out and drawn at once,
// whatever the server made of it.

#include <QApplication>
#include <QPixmap>
#include <ctime>

#include "fuzz_world.h"
#include "logentry/frm_response.h"
#include "net/plain_page.h"
#include "ui/dialogs/response_view.h"

namespace {

/// Of processor time, which a busy computer does not add to.
constexpr std::clock_t longest_drawing = 2 * CLOCKS_PER_SEC;

class Window {
  public:
    /// The processor time that showing the answer took.
    std::clock_t Show(std::string_view answer) {
        m_world.Write("sr", answer);
        const std::clock_t begin = std::clock();
        m_response.Show_Response();
        QApplication::processEvents();
        norvane::fuzz::Check(!m_view.grab().isNull());
        return std::clock() - begin;
    }
    [[nodiscard]] bool Has_Failed() { return !m_world.Take_Errors().empty(); }

  private:
    char m_name[5] = "fuzz";
    char* m_arguments[2] = {m_name, nullptr};
    int m_count = 1;
    bool m_drawn_into_memory = qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication m_application{m_count, m_arguments};
    norvane::fuzz::Fuzz_World& m_world = norvane::fuzz::Shared_World();
    norvane::frmResponse m_response{m_world.services};
    norvane::Response_View m_view{m_response, nullptr};
};

/// Never destroyed: Qt's own ends come before those of this file's objects. The first page costs
/// the reading of the fonts.
Window& Shared_Window() {
    static Window* const window = [] {
        auto* made = new Window;
        made->Show("<p>Accepted</p>");
        return made;
    }();
    return *window;
}

}  // namespace

/// The library of fonts keeps what it has read until the process ends.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
    return "leak:libfontconfig";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace norvane;
    Window& window = Shared_Window();
    std::string answer(fuzz::Text_Of(data, size));
    // What takes long takes much of it: behind a form feed stands what fills a page.
    const std::size_t feed = answer.find('\f');
    if (const std::string piece = answer.substr(std::min(feed, answer.size())); piece.size() > 1) {
        for (answer.resize(feed); answer.size() < longest_page;)
            answer += piece.substr(1);
    }
    fuzz::Check(window.Show(answer) < longest_drawing);
    fuzz::Check(!window.Has_Failed());
    return 0;
}
