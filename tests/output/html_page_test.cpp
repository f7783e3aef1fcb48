#include "output/files/html_page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace glimmer {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(HtmlPage, AreasRowsAndNotesHaveTheirForms) {
    const PageCapture capture{
        "First", "a_files/a_img1.png", {640, 480}, {{{1, 2, 30, 40}, "see here"}}, "one\r\ntwo\n"};
    const std::string page = htmlPage("a", std::vector{capture});
    EXPECT_THAT(page, HasSubstr("<area coords=\"1,2,30,40\" shape=\"rect\"  href=\"#\" alt=\"see here\" "
                                "onClick=\"alert('see here'); return false;\">\n"));
    EXPECT_THAT(page, HasSubstr("<tr>\r\n<td>see here</td>\r\n</tr>\r\n"));
    EXPECT_THAT(page, HasSubstr("one<br>\r\ntwo<br>\r\n"));
    EXPECT_THAT(page, HasSubstr("src=\"a_files/a_img1.png\" width=\"640\" height=\"480\""));
    EXPECT_THAT(page, HasSubstr("<title>a</title>"));
}

TEST(HtmlPage, TextCannotLeaveItsPlace) {
    const std::string attack = "\"><script>alert('x')</script>\\');{areas}&amp;";
    const PageCapture capture{attack, "a b#?.png", {1, 1}, {{{0, 0, 1, 1}, attack}}, attack};
    const std::string page = htmlPage(attack, std::vector{capture});
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(page, HasSubstr("{areas}&amp;amp;"));  // neither a tag nor an entity
    EXPECT_THAT(page, HasSubstr("src=\"a%20b%23%3F.png\""));
    EXPECT_THAT(page, HasSubstr("alert('\\x22\\x3e\\x3cscript\\x3ealert(\\x27x\\x27)\\x3c/script\\x3e\\x5c\\x27);"));
}

TEST(HtmlPage, NamesOfFolderAndPictures) {
    EXPECT_EQ(pageFolder("My page"), "My page_files\\");
    EXPECT_EQ(pagePictureName("My page", 12), "My page_img12");
}

}  // namespace
}  // namespace glimmer
