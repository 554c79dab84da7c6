#include "common/boxes.h"

namespace norvane {

Answer Ask(Desktop& desktop, std::string_view question, Icon icon, std::string_view title) {
    return desktop.Show_Message({std::string(question), std::string(title), icon, Buttons::yes_no});
}

void Tell(Desktop& desktop, std::string_view text, Icon icon, std::string_view title,
          std::string_view details) {
    desktop.Show_Message(
        {std::string(text), std::string(title), icon, Buttons::ok, std::string(details)});
}

}  // namespace norvane
