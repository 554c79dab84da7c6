#include "ui/dialogs/response_view.h"

#include <QApplication>
#include <optional>

#include "support/test_world.h"
#include "ui/window/qt_text.h"

namespace norvane {
namespace {

class Response_View_Test : public test::Test_World {
  protected:
    /// What the viewer shows of an answer.
    std::string Shown(const std::string& answer) {
        Write("sr", answer);
        response.Show_Response();
        QApplication::processEvents();
        return From_Q(Page().toPlainText());
    }
    QTextBrowser& Page() { return *view.findChild<QTextBrowser*>(); }
    /// What stands below the page.
    std::string Note() { return From_Q(view.findChild<QLabel*>()->text()); }

    frmResponse response{services};
    Response_View view{response, nullptr};
};

TEST_F(Response_View_Test, The_disk_is_not_asked_for_what_a_page_names) {
    QImage red(200, 200, QImage::Format_RGB32);
    red.fill(Qt::red);
    const std::string picture = (directory / "red.png").string();
    ASSERT_TRUE(red.save(QString::fromStdString(picture), "PNG"));
    Write("red.css", "body { background-color: red }");
    EXPECT_EQ(Shown("<html><head><style>@import \"" + directory.string() +
                    "/red.css\";</style></head><body background=\"" + picture + "\"><img src=\"" +
                    picture + "\"><img src=\"file://" + picture +
                    "\"><p style=\"background-image:url(" + picture + ")\">Accepted</p></body>"),
              "Accepted");
    const QImage drawn = view.grab().toImage();
    for (int y = 0; y < drawn.height(); ++y) {
        for (int x = 0; x < drawn.width(); ++x)
            ASSERT_NE(drawn.pixel(x, y), red.pixel(0, 0)) << x << ", " << y;
    }
}

TEST_F(Response_View_Test, Pages_are_drawn_and_texts_and_hostile_pages_are_shown_as_texts) {
    EXPECT_EQ(Shown("Caf\xe9 <ops@example.org>\r\n2 < 3\r\n"),
              "Caf\xe9 <ops@example.org>\r\n2 < 3\r\n");
    EXPECT_EQ(Shown("<!DOCTYPE html>\n<title>x</title><p>Caf\xc3\xa9 &amp; bar"), "Caf\xe9 & bar");
    std::string long_page = "<html>";
    while (long_page.size() < 10'000'000)
        long_page += "<p>Flight <b>accepted</b></p>";
    EXPECT_EQ(Shown(long_page).substr(0, 15), "Flight accepted");
    EXPECT_NE(Note().find(QLocale(QLocale::English).toString(long_page.size()).toStdString()),
              std::string::npos);
    std::string lines;
    for (int i = 0; i < 100; ++i)
        lines += "<p style=\"line-height:9999\">x";
    Shown(lines);
    EXPECT_LT(Page().document()->size().height(), 10'000) << "the heights passed";
    EXPECT_EQ(Note(), "");
    std::string all_bytes;
    for (int i = 0; i < 40'000; ++i)
        all_bytes += static_cast<char>(i * 7919LL >> 3);
    Shown("<p>" + all_bytes);
}

TEST_F(Response_View_Test, Closing_the_window_is_the_link_and_a_failed_post_closes_it_alone) {
    response.Contact_Server();
    EXPECT_TRUE(view.isVisible());
    EXPECT_FALSE(view.isModal());
    response.Close();
    EXPECT_FALSE(view.isVisible());
    EXPECT_EQ(Read("cs"), "Contacting Server ...\r\n");
    response.Contact_Server();
    view.close();
    EXPECT_FALSE(view.isVisible());
    EXPECT_FALSE(response.Is_Open());
    EXPECT_FALSE(std::filesystem::exists(directory / "cs"));
}

}  // namespace
}  // namespace norvane
