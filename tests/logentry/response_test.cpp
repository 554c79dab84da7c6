#include "logentry/frm_response.h"

#include <gmock/gmock.h>

#include "support/test_world.h"

namespace norvane {
namespace {

class Response : public test::Test_World {
  protected:
    [[nodiscard]] bool Is_There(const char* file) const {
        return std::filesystem::exists(directory / file);
    }
    frmResponse response{services};
};

TEST_F(Response, The_viewer_shows_the_wait_then_the_answer_and_takes_both_files_away) {
    std::string seen;
    response.changed.Connect([&] { seen = response.Is_Open() ? response.Page() : "closed"; });
    response.Contact_Server();
    EXPECT_EQ(seen, "Contacting Server ...\r\n");
    EXPECT_EQ(Read("cs"), seen);
    const std::string answer("<p>\xC3\xA9\xE9\0</p>\r\n", 13);
    Write("sr", answer);
    response.Show_Response();
    EXPECT_EQ(seen, answer);
    std::filesystem::remove(directory / "cs");  // somebody else was faster
    response.hypClose.Click();
    EXPECT_EQ(seen, "closed");
    EXPECT_FALSE(Is_There("sr"));
    response.Contact_Server();
    response.hypClose.Click();
    EXPECT_FALSE(Is_There("cs"));
    // An answer that cannot be read leaves no wait on the screen.
    response.Contact_Server();
    response.Show_Response();
    EXPECT_EQ(seen, "closed");
    EXPECT_TRUE(Is_There("cs")) << "only the pilot's Close deletes";
    EXPECT_THAT(Take_Errors(),
                testing::ElementsAre(testing::HasSubstr("frmResponse.Show_Response()")));
}

}  // namespace
}  // namespace norvane
