#pragma once
// Between the core's texts and Qt's. The core breaks lines with CR LF, Qt with LF.

#include <QString>
#include <filesystem>
#include <string>
#include <string_view>

namespace norvane {

[[nodiscard]] QString To_Q(std::string_view text);
/// A character that the core's code page lacks becomes its nearest letter.
[[nodiscard]] std::string From_Q(const QString& text);
/// A text as a tool tip, which shows every sign of it: Qt would take some for markup.
[[nodiscard]] QString Tip_Of(const QString& text);
[[nodiscard]] QString Path_To_Q(const std::filesystem::path& path);
[[nodiscard]] std::filesystem::path Path_From_Q(const QString& path);

}  // namespace norvane
