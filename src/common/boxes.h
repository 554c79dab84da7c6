#pragma once
// Questions and notes to the pilot. Every Yes/No question of the program goes through `Ask`.

#include <string>
#include <string_view>

#include "common/services.h"
#include "common/text.h"

namespace norvane {

/// A Yes/No question. `Answer::none` when it was left without an answer: the caller then does
/// nothing, neither what Yes nor what No would do.
[[nodiscard]] Answer Ask(Desktop& desktop, std::string_view question, Icon icon = Icon::question,
                         std::string_view title = product_name);

/// A note that needs no answer; `details` is its technical line.
void Tell(Desktop& desktop, std::string_view text, Icon icon = Icon::information,
          std::string_view title = product_name, std::string_view details = {});

}  // namespace norvane
