#pragma once
// A settings store that lives as long as the object: for tests and for dialogs' trial settings.

#include <functional>
#include <string>
#include <unordered_map>

#include "common/services.h"

namespace norvane {

class Memory_Store : public Settings_Store {
  public:
    [[nodiscard]] std::optional<std::string> Find(std::string_view section,
                                                  std::string_view key) override {
        const auto values = m_sections.find(section);
        if (values == m_sections.end())
            return std::nullopt;
        const auto found = values->second.find(key);
        if (found == values->second.end())
            return std::nullopt;
        return found->second;
    }
    void Set(std::string_view section, std::string_view key, std::string_view value) override {
        At(At(m_sections, section), key) = value;
    }
    void Delete_Section(std::string_view section) override {
        if (const auto found = m_sections.find(section); found != m_sections.end())
            m_sections.erase(found);
    }
    void Begin() override { ++m_depth; }
    void Commit() override { --m_depth; }
    void Back_Up() override {}

    /// Open batches; 0 when every Begin met its Commit.
    [[nodiscard]] int Depth() const { return m_depth; }

  private:
    /// Finds a key without making a text of it.
    struct Key_Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view key) const {
            return std::hash<std::string_view>()(key);
        }
    };
    template <class Value>
    using By_Key = std::unordered_map<std::string, Value, Key_Hash, std::equal_to<>>;

    template <class Value>
    static Value& At(By_Key<Value>& map, std::string_view key) {
        auto found = map.find(key);
        if (found == map.end())
            found = map.try_emplace(std::string(key)).first;
        return found->second;
    }

    By_Key<By_Key<std::string>> m_sections;
    int m_depth = 0;
};

}  // namespace norvane
