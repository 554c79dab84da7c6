#pragma once
// Entries out of the lists of a JSON page, where one of thousands matters and no other one may hide
// it: what is broken elsewhere, or cut off behind, is passed over. Used for the online network's
// data.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace norvane {

class Json_Entries {
  public:
    struct Entry {
        /// The name of the list in the outermost object, as it is written.
        std::string_view list;
        /// The object from "{" to "}", as it is written.
        std::string_view text;
    };

    /// `page` begins with "{" and lives longer.
    explicit Json_Entries(std::string_view page) : m_page(page) {}

    /// The next object that lies in a list of the outermost object; empty at the end.
    [[nodiscard]] std::optional<Entry> Next();
    /// The end was reached, and the outermost object was closed there.
    [[nodiscard]] bool Is_Whole() const { return m_whole; }

  private:
    void Take_Text();
    void Open(char bracket);
    [[nodiscard]] std::optional<Entry> Close();

    std::string_view m_page;
    std::size_t m_place = 0;
    int m_depth = 0;
    /// What lies in the outermost object is a list.
    bool m_in_list = false;
    bool m_whole = false;
    std::string_view m_name;
    std::size_t m_entry = 0;
};

/// An entry as a strict parser takes it: bytes that are no UTF-8 as code page characters, halves of
/// characters as "?", control characters as blanks, numbers that are none or too large as null.
[[nodiscard]] std::string Mended_Json(std::string_view entry);

}  // namespace norvane
