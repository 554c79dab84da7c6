#include "ui/window/qt_text.h"

#include <QFile>
#include <QTextDocument>

#include "common/code_page.h"
#include "common/text.h"

namespace norvane {

QString To_Q(std::string_view text) {
    return QString::fromStdString(To_Utf8(Replace_All(text, cr_lf, "\n")));
}

std::string From_Q(const QString& text) {
    const std::string lf = Replace_All(From_Utf8(text.toStdString()), cr_lf, "\n");
    return Replace_All(lf, "\n", cr_lf);
}

QString Tip_Of(const QString& text) {
    if (!Qt::mightBeRichText(text))
        return text;
    return "<p style=\"white-space: pre-wrap\">" + text.toHtmlEscaped() + "</p>";
}

QString Path_To_Q(const std::filesystem::path& path) {
    return QFile::decodeName(QByteArray::fromStdString(path.string()));
}

std::filesystem::path Path_From_Q(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

}  // namespace norvane
