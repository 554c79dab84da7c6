// What every test of widgets stands on: Qt's application object, drawing into memory.

#include <gtest/gtest.h>

#include <optional>

#include "ui/guarded_application.h"

namespace norvane {
namespace {

class Ui_Environment : public testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        m_application.emplace(m_count, m_arguments);
        // As the program: a window that closes ends no event loop by itself.
        QApplication::setQuitOnLastWindowClosed(false);
    }
    void TearDown() override { m_application.reset(); }

  private:
    char m_name[8] = "test_ui";
    char* m_arguments[2] = {m_name, nullptr};
    int m_count = 1;
    std::optional<Guarded_Application> m_application;
};

// The framework owns it.
const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(new Ui_Environment);

}  // namespace
}  // namespace norvane
