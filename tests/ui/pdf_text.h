#pragma once
// A PDF file read back with poppler's tools.

#include <filesystem>
#include <string>
#include <vector>

#include "common/text.h"
#include "support/child_process.h"

namespace norvane::test {

/// The text of each page, laid out as it is printed; none when the file is no PDF.
inline std::vector<std::string> Pdf_Pages(const std::filesystem::path& file) {
    auto pages =
        Split(Run_Program({"/usr/bin/pdftotext", "-layout", file.string(), "-"}).output, '\f');
    // Behind the last page's end.
    pages.pop_back();
    return pages;
}

/// Where each word of each page stands.
inline std::string Pdf_Words(const std::filesystem::path& file) {
    return Run_Program({"/usr/bin/pdftotext", "-bbox", file.string(), "-"}).output;
}

/// The numbers at the foot of the pages: "3 2 1 ".
inline std::string Pdf_Page_Numbers(const std::filesystem::path& file) {
    std::string numbers;
    for (const std::string& page : Pdf_Pages(file))
        numbers += std::to_string(std::stoi(page.substr(page.rfind("Page ") + 5))) + " ";
    return numbers;
}

}  // namespace norvane::test
