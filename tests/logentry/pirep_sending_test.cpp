// The finished flight's way from its PIREP text file to the airline's script.

#include <gmock/gmock.h>

#include "common/code_page.h"
#include "logentry/cls_log_entry.h"
#include "net/net_world.h"

namespace norvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Pirep_Sending : public test::Net_World {
  protected:
    Pirep_Sending() {
        Write("VA_X/server.cfg", server.Host() + "\r\n/in\r\n");
        Write("VA_X/pirep.cfg", "1^a\r\n2^b\r\n3^c\r\n4^date\r\n5^e\r\n");
        airline.Get_VA_Settings("X");
        Take_Errors();  // a form this short is reported
        entry.Set(Log_Field::PIREP_FILE_NAME, From_Path(directory / "reports/one.txt"));
    }
    bool Send(const std::string& file) {
        Write("reports/one.txt", file);
        return entry.Send_PIREP(settings, airline, options);
    }
    [[nodiscard]] std::string Form() const {
        return server.Request().substr(server.Request().find("\r\n\r\n") + 4);
    }

    test::Raw_Server server{[](int socket) {
        test::Send(socket, "HTTP/1.1 500 Sorry\r\nContent-Length: 4\r\n\r\nlost");
    }};
    clsLogEntry entry{services};
};

TEST_F(Pirep_Sending, The_Date_Takes_The_Form_That_Servers_Read) {
    for (const auto& [date, posted] : std::vector<std::pair<std::string, std::string>>{
             {"2008-04-23", "2008%2D04%2D23+00%3A00%3A00"},
             {"4/23/2008", "2008%2D04%2D23+00%3A00%3A00"},
             {"4/23/2008 15:09:07", "2008%2D04%2D23+15%3A09%3A07"},
             {"yesterday", "yesterday"},
             {"", ""}}) {
        EXPECT_TRUE(Send("P1|N\xE4me||" + date + "|B738|more\r\nsecond|line\r\n"));
        EXPECT_EQ(Form(), "a=P1&b=N%E4me&c=&date=" + posted + "&e=B738&");
    }
    EXPECT_EQ(Read("sr"), "lost\r\n");
    EXPECT_TRUE(Send("1|2"));
    EXPECT_EQ(Form(), "a=1&b=2&");
}

TEST_F(Pirep_Sending, What_Cannot_Be_Sent_Is_Told) {
    EXPECT_FALSE(Send("no values\r\na|b\r\n"));
    EXPECT_FALSE(Send(""));
    EXPECT_EQ(server.Request(), "");
    std::filesystem::remove(directory / "reports/one.txt");
    EXPECT_FALSE(entry.Send_PIREP(settings, airline, options));
    airline.Get_VA_Settings("DEFAULT");  // has no server
    EXPECT_FALSE(Send("1|2"));
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsLogEntry.Send_PIREP()"),
                                           HasSubstr("clsWinInet.Send_PIREP()")));
}

}  // namespace
}  // namespace norvane
