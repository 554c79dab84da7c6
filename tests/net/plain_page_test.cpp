// An airline's page cut down to what can be drawn at once.

#include "net/plain_page.h"

#include <gmock/gmock.h>

#include <regex>

#include "common/text.h"

namespace norvane {
namespace {

std::string Times(std::size_t count, const std::string& text) {
    return Join(std::vector<std::string>(count, text), "");
}

/// What is shown: "text: " and the text, or the markup.
std::string Shown(const std::string& answer) {
    const Plain_Page page = Clean_Page(answer);
    return (page.is_text ? "text: " : "") + page.content;
}

TEST(Plain_Page, Only_plain_structure_is_left_and_every_element_is_closed) {
    for (const auto& [answer, shown] : std::vector<std::pair<std::string, std::string>>{
             {"<HTML><body onload=x><H1 class='a>b'>Hi</H1><p>a<br/>b", "<h1>Hi</h1><p>a<br>b</p>"},
             {"<p>a<p>b<div>c</p>d", "<p>a</p><p>b</p><div>c</div>d"},
             {"<b>a<p>b</b>c <em><strong>d</em>e",
              "<b>a</b><p><b>b</b>c <i><b>d</b></i><b>e</b></p>"},
             {"<font color=red size=7>a<span style=\"color:#00f;x\">b</span></font>c",
              "<font color=\"red\">a</font><font color=\"#00f\">b</font>c"},
             {"<font color=white>a</font><font color=\"#ffff00\">b</font><font color=\"x'>\">c",
              "abc"},
             {"<ul><li>a<li>b<ol>c</ul>d", "<ul><li>a</li><li>b<ol><li>c</li></ol></li></ul>d"},
             {"<table width=9999 rowspan=9><tr><td rowspan=9 colspan=3>a<td>b<tr>c</table>d",
              "<table><tr><td>a</td><td>b</td></tr><tr><td>c</td></tr></table>d"},
             {"<table><td>a<table><tr><td>b<td>c</table>d</td><th>e",
              "<table><tr><td>a<br><br> b c<br>d</td><th>e</th></tr></table>"},
             {"<ul><li><table><td>x</li></ul>y</table>z</ul>!",
              "<ul><li><table><tr><td>xy</td></tr></table>z</li></ul>!"},
             {"<a href='http://x'>look</a><img src=x alt=y> 1 < 2 & <i>x",
              "look 1 &lt; 2 & <i>x</i>"},
             {"<title>t</title><script>if (a<b) </scr</script><!-- <b> --><style>x</style>ok<p>",
              "ok<p></p>"},
             {"<p><form action=x><input value=y><unknown>z", "<p>z</p>"},
             {"</table></ul></b></p><b>x</i></td>y", "<b>x</b><b>y</b>"}}) {
        EXPECT_EQ(Shown(answer), shown) << answer;
    }
}

TEST(Plain_Page, What_is_no_page_or_too_much_of_one_is_text) {
    for (const auto& [answer, shown] : std::vector<std::pair<std::string, std::string>>{
             {"Caf\xe9 <ops@example.org>\r\n2 < 3\r\n", "Caf\xc3\xa9 <ops@example.org>\n2 < 3\n"},
             {"\xEF\xBB\xBF\xE6\x97\xA5\xC2\x85", "\xE6\x97\xA5"},
             {std::string("a\0\x1b[1m\x7f\xff\x9d!\r", 11), "a[1m\xc3\xbf!\n"},
             {"<b", "<b"}}) {
        EXPECT_EQ(Shown(answer), "text: " + shown);
    }
    // Each of these took its seconds to lay out.
    const std::string cell = "<td rowspan=9>x";
    for (const std::string& page :
         {Times(8, "<table><tr><td>") + Times(5000, "<p>x"), "<table>" + Times(2000, cell),
          "<table>" + Times(50, cell), Times(30'000, "<br>"), Times(5000, "<b>x</b>"),
          Times(3000, "<ul><li>"), Times(4, "<font color=red><b><i><u>") + Times(500, "x<br>"),
          "<table>" + Times(700, "<tr>" + Times(2, cell))}) {
        EXPECT_TRUE(Clean_Page(page).is_text) << page.substr(0, 50);
    }
    EXPECT_EQ(Shown("<table>" + Times(30, "<tr>" + Times(41, "<td>&lt;"))).substr(0, 15),
              "text: <  <  <  ");
    // Cut where the rest would be too long, in whatever it is then.
    EXPECT_EQ(Shown("<p>" + Times(50'000, "x")), "<p>" + Times(longest_page - 3, "x") + "</p>");
}

TEST(Plain_Page, Nothing_but_bare_elements_passes_whatever_comes) {
    const auto pieces = Split(
        "<p style=\"line-height:9999\">x|<td rowspan=9>|</td>|<tr>|</tr>|<table border=9>|</table>|"
        "<ul>|</ul>|<li>|</li>|<b>|</b>|<font color=red>|</font>|<h1>|</p>|<hr>|text|<|<a href=\"|"
        "<!--|-->|<script>",
        '|');
    const std::regex alone("<[bh]r>");
    const std::regex closed(R"(<(\w+)( color="[\w#]+")?>[^<]*</\1>)");
    unsigned dice = 1;
    int drawn = 0;
    for (int round = 0; round < 300; ++round) {
        std::string page;
        for (int i = 0; i < 60; ++i)
            page += pieces[(dice = dice * 1664525U + 1013904223U) / 65536U % pieces.size()];
        const Plain_Page clean = Clean_Page(page);
        if (clean.is_text)  // all of it in a comment
            continue;
        ++drawn;
        std::string rest = std::regex_replace(clean.content, alone, "");
        for (std::string before; before != rest;)
            rest = std::regex_replace(before = rest, closed, "");
        EXPECT_FALSE(Contains(rest, "<")) << page << "\n" << clean.content;
    }
    EXPECT_GT(drawn, 200);
}

}  // namespace
}  // namespace norvane
