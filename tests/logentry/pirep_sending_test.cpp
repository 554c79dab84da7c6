// The finished flight's way from its PIREP text file to the airline's script.

#include <gmock/gmock.h>

#include "common/code_page.h"
#include "logentry/cls_log_entry.h"
#include "net/net_world.h"

namespace norvane {
namespace {

using testing::AllOf;
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
        return !entry.Send_PIREP(settings, airline, options);
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
             {"4/23/2008 15:09:07", "2008%2D04%2D23+15%3A09%3A07"},
             {"yesterday", "yesterday"},
             {"", ""}}) {
        EXPECT_TRUE(Send("P1|N\xE4me||" + date + "|B738|more\r\nsecond|line\r\n"));
        EXPECT_EQ(Form(), "a=P1&b=N%E4me&c=&date=" + posted + "&e=B738&");
    }
    EXPECT_EQ(Read("sr"), "lost\r\n");
    EXPECT_TRUE(Send("1|2|3"));
    EXPECT_EQ(Form(), "a=1&b=2&c=3&");
}

TEST_F(Pirep_Sending, What_Cannot_Be_Sent_Is_Told_With_File_Airline_And_Host) {
    for (const char* content : {"no values\r\na|b\r\n", ""}) {
        EXPECT_FALSE(Send(content));
        EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("one.txt holds no values")));
    }
    std::filesystem::remove(directory / "reports/one.txt");
    auto failure = entry.Send_PIREP(settings, airline, options);
    ASSERT_TRUE(failure);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsLogEntry.Send_PIREP()")));
    Tell_PIREP_Failure(desktop, *failure);
    EXPECT_THAT(desktop.boxes.back().text, HasSubstr("could not be read, and was not sent"));
    EXPECT_EQ(server.Request(), "");

    Write("VA_X/server.cfg", "127.0.0.1:1\r\n/in\r\n");
    airline.Get_VA_Settings("X");
    Write("reports/one.txt", "1|2");
    Take_Errors();
    failure = entry.Send_PIREP(settings, airline, options);
    ASSERT_TRUE(failure);
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("clsWinInet.Send_PIREP()"),
                                           HasSubstr("one.txt was not sent to the airline X at "
                                                     "127.0.0.1:1: InternetConnect")));
    Tell_PIREP_Failure(desktop, *failure);
    EXPECT_THAT(desktop.boxes.back().text,
                AllOf(HasSubstr("127.0.0.1:1"), HasSubstr("one.txt"), HasSubstr("Send PIREP")));
    EXPECT_THAT(desktop.boxes.back().details, HasSubstr("InternetConnect"));
}

}  // namespace
}  // namespace norvane
