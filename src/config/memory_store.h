#pragma once
// A settings store that lives as long as the object: for tests and for dialogs' trial settings.

#include <map>
#include <utility>

#include "common/services.h"

namespace norvane {

class Memory_Store : public Settings_Store {
  public:
    [[nodiscard]] std::optional<std::string> Find(std::string_view section,
                                                  std::string_view key) override {
        const auto found = m_values.find({std::string(section), std::string(key)});
        if (found == m_values.end())
            return std::nullopt;
        return found->second;
    }
    void Set(std::string_view section, std::string_view key, std::string_view value) override {
        m_values[{std::string(section), std::string(key)}] = value;
    }
    void Delete_Section(std::string_view section) override {
        std::erase_if(m_values, [&](const auto& entry) { return entry.first.first == section; });
    }
    void Begin() override { ++m_depth; }
    void Commit() override { --m_depth; }
    void Back_Up() override {}

    /// Open batches; 0 when every Begin met its Commit.
    [[nodiscard]] int Depth() const { return m_depth; }

  private:
    std::map<std::pair<std::string, std::string>, std::string> m_values;
    int m_depth = 0;
};

}  // namespace norvane
