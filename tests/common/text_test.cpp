#include "common/text.h"

#include <gtest/gtest.h>

#include <random>

namespace glimmer {
namespace {

TEST(Text, EveryUtf16SequenceComesBackExactly) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        std::u16string text;
        for (size_t i = random() % 20; i > 0; --i)
            text.push_back(static_cast<char16_t>(random() % 4 == 0 ? 0xD800 + random() % 0x800 : random() % 0x10000));
        ASSERT_EQ(toUtf16(toUtf8(text)), text);
    }
}

TEST(Text, BytesThatAreNotUtf8BecomeOneReplacementEach) {
    EXPECT_EQ(toUtf16("a\xff\xc0\x80z"), u"a\xFFFD\xFFFD\xFFFDz");
    EXPECT_EQ(toUtf16("\xe2\x82"), u"\xFFFD\xFFFD");  // cut off
    EXPECT_EQ(toUtf16("\xf0\x9f\x98\x80"), u"\xD83D\xDE00");
    EXPECT_TRUE(isUtf8("\xe2\x82\xac"));
    EXPECT_FALSE(isUtf8("\xed\xa0\x80"));  // an unpaired surrogate
    EXPECT_FALSE(isUtf8("\xfc"));
}

TEST(Text, Replacing) {
    EXPECT_EQ(replaceAll("aaa", "a", "aa"), "aaaaaa");
    EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
    EXPECT_EQ(replaceAllIgnoringCase("HTTP://a http://b", "http://", ""), "a b");
    EXPECT_EQ(trimmed("  a b \r\n"), "a b");
    EXPECT_EQ(trimmed(" \t"), "");
    EXPECT_EQ(firstUnits("ab\xf0\x9f\x98\x80", 3), "ab");  // not half a pair
    EXPECT_EQ(firstUnits("ab\xf0\x9f\x98\x80", 4), "ab\xf0\x9f\x98\x80");
}

TEST(Text, Base64) {
    const std::string_view words[][2] = {{"", ""},        {"f", "Zg=="},        {"fo", "Zm8="},
                                         {"foo", "Zm9v"}, {"foob", "Zm9vYg=="}, {"\xff\xfe", "//4="}};
    for (const auto& [plain, encoded] : words) {
        const std::vector<uint8_t> bytes(plain.begin(), plain.end());
        EXPECT_EQ(base64Encode(bytes), encoded);
        EXPECT_EQ(base64Decode(encoded), bytes);
    }
    EXPECT_EQ(base64Decode("Zm\r\n9v"), base64Decode("Zm9v"));
    for (const char* bad : {"Z", "Zg=", "Zg==Zg==", "Z!==", "====", "Zm9v=", "Zm9vZ"})
        EXPECT_FALSE(base64Decode(bad).has_value()) << bad;
}

}  // namespace
}  // namespace glimmer
