#pragma once
// A PDF file read back with poppler's tools.

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace norvane::test {

/// The text of each page, laid out as it is printed; none when the file is no PDF.
inline std::vector<std::string> Pdf_Pages(const std::filesystem::path& file) {
    const std::string command = "pdftotext -layout '" + file.string() + "' - 2>/dev/null";
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(command.c_str(), "r"), &::pclose);
    std::vector<std::string> pages(1);
    std::array<char, 4096> piece{};
    for (std::size_t size = 0;
         (size = std::fread(piece.data(), 1, piece.size(), pipe.get())) > 0;) {
        for (std::size_t i = 0; i < size; ++i) {
            if (piece.at(i) == '\f')
                pages.emplace_back();
            else
                pages.back() += piece.at(i);
        }
    }
    // Behind the last page's end.
    pages.pop_back();
    return pages;
}

/// The numbers at the foot of the pages: "3 2 1 ".
inline std::string Pdf_Page_Numbers(const std::filesystem::path& file) {
    std::string numbers;
    for (const std::string& page : Pdf_Pages(file)) {
        const std::size_t mark = page.rfind("Page ");
        numbers += std::to_string(std::stoi(page.substr(mark + 5))) + " ";
    }
    return numbers;
}

}  // namespace norvane::test
