#include "upload/answers/xml_text.h"

#include <gtest/gtest.h>

namespace glimmer {
namespace {

TEST(XmlTexts, BecomeAsciiByMarkAndDeclarationAndComeBack) {
    const struct {
        std::string bytes;
        std::string ascii;
        std::string text;
    } cases[] = {
        {"<a>\xC3\xA9</a>", "<a>\x7F\x43\x33\x7F\x41\x39</a>", "<a>\xC3\xA9</a>"},
        {"\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><a/>", "<a/>", "<a/>"},
        {std::string("\xFF\xFE<\0\xE9\0>\0x", 9), "<\x7F\x43\x33\x7F\x41\x39>", "<\xC3\xA9>"},
        {std::string("\xFE\xFF\0<\0?\0x\0m\0l\0 \0?\0>\x20\xAC", 20), "\x7F\x45\x32\x7F\x38\x32\x7F\x41\x43",
         "\xE2\x82\xAC"},
        {"<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\xE9", "\x7F\x43\x33\x7F\x41\x39", "\xC3\xA9"},
        {"<?xml encoding='ISO-8859-1'?>\xC3\xA9", "\x7F\x43\x33\x7F\x41\x39", "\xC3\xA9"},  // hardly ever anything else
        {" \n<?xml-stylesheet?>", "<?xml-stylesheet?>", "<?xml-stylesheet?>"},
        {"\x7F", "\x7F\x37\x46", "\x7F"},
    };
    for (const auto& c : cases) {
        const std::optional<std::string> ascii = asciiXml(c.bytes);
        ASSERT_TRUE(ascii) << c.bytes;
        EXPECT_EQ(ascii->substr(0, ascii->find('\n')), c.ascii);
        EXPECT_EQ(fromAsciiXml(c.ascii), c.text);
    }
    for (const char* bad :
         {"<a>\xE9</a>", "<?xml encoding='koi8-r'?>\xE9", "<?xml ", "<?xml encoding='ISO-8859-1'\xE9"})
        EXPECT_FALSE(asciiXml(bad)) << bad;
    for (const char* bad : {"\x7F", "\x7F\x43", "\x7F-1", "\x7F\x43\x33", "\x7Fxy"})
        EXPECT_FALSE(fromAsciiXml(bad)) << bad;
}

}  // namespace
}  // namespace glimmer
