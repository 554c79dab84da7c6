// What the airline's scripts receive, byte for byte, and what remains of their answers.

#include <gmock/gmock.h>

#include <tuple>

#include "common/text.h"
#include "net/airline_forms.h"
#include "net/form_encoding.h"
#include "net/net_world.h"

namespace norvane {
namespace {

using namespace std::string_literals;
using test::Raw_Server;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class Posts : public test::Net_World {
  protected:
    /// An airline whose form has these field names.
    void Fly_For(const std::string& fields, bool encoded = true) {
        Write("VA_X/server.cfg", "host\r\n/pirep\r\n/acars\r\n");
        if (!fields.empty())
            Write("VA_X/pirep.cfg", fields);
        if (!encoded)
            Write("VA_X/noencode", "");
        airline.Get_VA_Settings("X");
        Take_Errors();  // a form this short is reported
    }
    [[nodiscard]] std::string Form() const {
        return server.Request().substr(server.Request().find("\r\n\r\n") + 4);
    }

    std::string answer = "HTTP/1.1 404 Lost\r\nContent-Length: 9\r\n\r\n  <p>\r\n  "s;
    Raw_Server server{[this](int socket) { test::Send(socket, answer); }};
    ACARS_Report report{"1234Z Z\r\nFLT\r\nXY 1\r\nOUT\r\nFUEL 1\r\nW/B\r\n\r\n", "P&1", "KSEA",
                        "[     ]"};
};

TEST(Form_Encoding, Every_Byte_But_Letters_And_Digits_Is_Escaped) {
    EXPECT_EQ(Encode_URL("Aa Zz-09\xC4/_.~*@[`{\n\0"s),
              "Aa+Zz%2D09%C4%2F%5F%2E%7E%2A%40%5B%60%7B%0A%00");
}

TEST_F(Posts, A_Pirep_Fills_The_Airlines_Fields_In_Order) {
    for (const auto& [fields, encoded, pirep, form] :
         std::vector<std::tuple<std::string, bool, std::string, std::string>>{
             {"A^pid\r\nB^na me\r\nC^c\r\n", true, "7|J\xF6rg & Co|x|more",
              "pid=7&na+me=J%F6rg+%26+Co&c=x&"},
             {"A^pid\r\nB^na me\r\nC^c\r\nD^d\r\n", true, "7||2008-04-23",
              "pid=7&na+me=&c=2008%2D04%2D23&"},
             {"", true, "1|2|3", "=1&=2&"},
             {"A^a\r\nB^b=\r\n", false, "1&2|=\xE9|", "a=1&2&b===\xE9&"}}) {
        std::filesystem::remove_all(directory / "VA_X");
        Fly_For(fields, encoded);
        const auto result = Client().Send_PIREP(server.Host(), "/pirep", pirep);
        EXPECT_TRUE(result.success);
        EXPECT_EQ(Form(), form);
        EXPECT_EQ(result.answer, "<p>\r\n");
        EXPECT_EQ(Read("sr"), "<p>\r\n\r\n");
    }
}

TEST_F(Posts, A_Report_Fills_Eight_Fields) {
    EXPECT_EQ(Report_Form(airline, report),
              "acars0=1234%3A00+%3A00&acars1=FLT&acars2=XY+1&acars3=OUT&acars4=FUEL+1+W%2FB+++&"
              "acars5=P%261&acars6=KSEA&acars7=%5B+++++%5D&");
    Fly_For("", false);
    report.message = "Z\r\nb\r\nc\r\nd";
    EXPECT_EQ(
        Report_Form(airline, report),
        "acars0=:00&acars1=b&acars2=c&acars3=d&acars4=&acars5=P&1&acars6=KSEA&acars7=[     ]&");
    report.message = "a\r\nb\r\nc";
    EXPECT_THROW(static_cast<void>(Report_Form(airline, report)), Run_Error);
}

TEST_F(Posts, A_Failed_Post_Is_Reported_And_Leaves_No_Answer) {
    EXPECT_FALSE(Client().Send_PIREP("", "/pirep", "1|2").success);
    EXPECT_THAT(Take_Errors(), ElementsAre(AllOf(HasSubstr("clsWinInet.Send_PIREP()"),
                                                 HasSubstr("Error Number: -2147220996\r\n"),
                                                 HasSubstr("Error Description: Missing URL\r\n"))));
    answer.clear();
    EXPECT_EQ(Client().Send_PIREP(server.Host(), "/pirep", "1|2").failure, "HttpSendRequest");
    EXPECT_THAT(Take_Errors(), ElementsAre(HasSubstr("HttpSendRequest")));
    EXPECT_TRUE(desktop.boxes.empty()) << "whoever asked knows what to tell";
    EXPECT_FALSE(std::filesystem::exists(directory / "sr"));
}

}  // namespace
}  // namespace norvane
