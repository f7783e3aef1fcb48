#include "upload/answers/xml_answer.h"

#include <gtest/gtest.h>

#include <string>

namespace glimmer {
namespace {

Answer read(std::string_view text) {
    Result<Answer> answer = readXmlAnswer(text);
    EXPECT_TRUE(answer) << text << ": " << answer.message();
    return answer ? answer.take() : Answer();
}

TEST(XmlAnswers, ListElementsWithTextAndAttributes) {
    const Answer answer = read(R"(<?xml version="1.0" encoding="UTF-8" ?>
        <!-- a comment --><rsp stat="fail">
          <status> ERROR </status><message><![CDATA[too <big>]]> &amp; &#233;&#x20AC;!</message>
          <err code="98" msg='a "b" &lt;c&gt;'/><empty></empty>
          <m:thumbnail xmlns:m="urn:m" url="t"/><link rel="self" href="1"/><link rel="x#canonical" href="2">
          out<b>in</b>side</link>
        </rsp>)");
    EXPECT_EQ(answer.attribute("rsp", "stat"), "fail");
    EXPECT_EQ(answer.text("status"), "ERROR");
    EXPECT_EQ(answer.text("message"), "too <big> & \xC3\xA9\xE2\x82\xAC!");
    EXPECT_EQ(answer.attribute("err", "code"), "98");
    EXPECT_EQ(answer.attribute("err", "msg"), "a \"b\" <c>");
    EXPECT_EQ(answer.attribute("m:thumbnail", "url"), "t");
    EXPECT_EQ(answer.text("empty"), "");
    EXPECT_EQ(answer.attribute("link", "href"), "1");
    EXPECT_EQ(answer.first("link", "rel", "x#canonical")->attribute("href"), "2");
    EXPECT_EQ(answer.first("link", "rel", "x#canonical")->text, "outside");
    for (const char* none : {"", "Status", "thumbnail", "rsp.status"}) EXPECT_FALSE(answer.text(none)) << none;
    EXPECT_FALSE(answer.attribute("rsp", "code"));

    std::string utf16 = "\xFF\xFE";
    for (const char c : std::string("<a>\xE9</a>")) utf16 += {c, '\0'};
    EXPECT_EQ(read(utf16).text("a"), "\xC3\xA9");
    EXPECT_EQ(read("\xEF\xBB\xBF<a>\xC3\xA9</a>").text("a"), "\xC3\xA9");
    EXPECT_EQ(read("<a/><b/>text").elements.size(), 1U);

    // Wherever a reader cuts its input into pieces, no character is cut in two.
    for (const std::string& start : {std::string(), std::string("x"), std::string("xx"), std::string("xxx")}) {
        std::string text = start;
        for (int i = 0; i < 20000; ++i) text += i % 2 == 0 ? "\xE2\x82\xAC" : "\xF0\x9F\x98\x80";
        EXPECT_TRUE(read("<a>" + text + "</a>").text("a") == text) << start.size();
    }
}

TEST(XmlAnswers, ThatEndAnywhereAreRefused) {
    const std::string whole =
        R"(<?xml version="1.0"?><r a="v"><!-- c --><b>text &amp; more</b><![CDATA[data]]><?p i?><e/></r>)";
    EXPECT_TRUE(readXmlAnswer(whole));
    for (size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(readXmlAnswer(whole.substr(0, length))) << whole.substr(0, length);
}

TEST(XmlAnswers, ThatAreNotXmlOrReachOutAreRefused) {
    const char* const bad[] = {
        "http://a/b",
        "{\"a\":1}",
        "<a></b>",
        "<a><b></a></b>",
        "text<a/>",
        "</a>",
        "<a",
        "<>",
        "<a b=c/>",
        "<a b='1/>",
        "<!DOCTYPE a><a/>",
        "<!DOCTYPE a SYSTEM 'file:///c:/windows/win.ini'><a/>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM 'http://127.0.0.1:1/'>]><a>&e;</a>",
        "<!DOCTYPE a [<!ENTITY e 'ee'><!ENTITY f '&e;&e;&e;'>]><a>&f;</a>",
        "<html><head><title>502</title><body><br>Bad gateway</body></html>",
    };
    for (const char* text : bad) EXPECT_FALSE(readXmlAnswer(text)) << text;
}

TEST(XmlAnswers, HaveBounds) {
    const auto times = [](size_t count, const std::string& part) {
        std::string text;
        while (count-- > 0) text += part;
        return text;
    };
    EXPECT_TRUE(readXmlAnswer(times(64, "<a>") + times(64, "</a>")));
    EXPECT_FALSE(readXmlAnswer(times(65, "<a>") + times(65, "</a>")));
    EXPECT_FALSE(readXmlAnswer(times(500000, "<a>")));
    EXPECT_EQ(read("<r>" + times(49999, "<a/>") + "</r>").elements.size(), 50000U);
    EXPECT_FALSE(readXmlAnswer("<r>" + times(50000, "<a/>") + "</r>"));
    EXPECT_FALSE(
        readXmlAnswer("<r>" + times(5001, "<a b='1' c='2' d='3' e='4' f='5' g='6' h='7' i='8' j='9' k=''/>") + "</r>"));
    const std::string text(8388608 - 7, 'x');
    EXPECT_EQ(read("<a>" + text + "</a>").text("a"), text);
    EXPECT_FALSE(readXmlAnswer("<a>" + text + "x</a>"));
}

}  // namespace
}  // namespace glimmer
