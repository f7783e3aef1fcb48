#include "settings/encoded_text.h"

#include <gtest/gtest.h>

#include "settings/file_text.h"

namespace glimmer {
namespace {

using namespace std::string_literals;

TEST(EncodedText, FourLowerCaseDigitsAUnit) {
    EXPECT_EQ(encodeText(""), "");
    EXPECT_EQ(encodeText("A]\n\xE2\x82\xAC"), "0041005d000a20ac");
    EXPECT_EQ(encodeText("\xF0\x9F\x98\x80"), "d83dde00");
    EXPECT_EQ(decodeText("0041005D000a20AC"), "A]\n\xE2\x82\xAC");
}

TEST(EncodedText, DamagedTextGivesWhatCanBeRead) {
    const std::pair<const char*, const char*> cases[] = {{"", ""},          {"004", ""},       {"0041004", "A"},
                                                         {"004g0042", "B"}, {"-0410042", "B"}, {"0x410042", "B"},
                                                         {" 0410042", "B"}};
    for (const auto& [encoded, text] : cases) EXPECT_EQ(decodeText(encoded), text) << encoded;
}

TEST(EncodedText, EveryTextSurvivesEachForm) {
    const std::string texts[] = {"",
                                 "plain",
                                 " outer blanks\t",
                                 "a=b",
                                 "line\r\n[section]\nkey=1",
                                 "a\0b"s,
                                 "]",
                                 "[x",
                                 ";c",
                                 "#c",
                                 "100%",
                                 "%41",
                                 "%4",
                                 "hex:",
                                 "hex:0041",
                                 "http://x/%20y",
                                 "\xED\xA0\x80",  // an unpaired surrogate
                                 "Gr\u00FC\u00DFe"};
    for (const std::string& text : texts) {
        EXPECT_EQ(decodeText(encodeText(text)), text);
        for (const IniPlace place : {IniPlace::Section, IniPlace::Key, IniPlace::Value}) {
            const std::string form = iniForm(text, place);
            EXPECT_EQ(fromIniForm(form, place), text);
            for (const char c : "\r\n"s) EXPECT_EQ(form.find(c), std::string::npos) << form;
        }
    }
    for (const char* plain : {"http://x/%20y", "!###last used style ###!", "hex:0041", "hex:5"})
        EXPECT_EQ(iniForm(plain, IniPlace::Section), plain);
    EXPECT_EQ(iniForm("hex:005d", IniPlace::Section), "hex:006800650078003a0030003000350064");
    EXPECT_EQ(iniForm("a]", IniPlace::Section), "hex:0061005d");
    EXPECT_EQ(iniForm("a]", IniPlace::Value), "a]");
}

struct FileText {
    const char* what;
    std::string bytes;
    std::string text;
};

TEST(FileText, EncodingsAreToldApart) {
    const FileText cases[] = {
        {"empty", "", ""},
        {"ASCII", "a=1\r\n", "a=1\r\n"},
        {"UTF-8", "t=\xC3\xA9\xE2\x82\xAC", "t=\xC3\xA9\xE2\x82\xAC"},
        {"UTF-8 with its mark", "\xEF\xBB\xBFt=\xC3\xA9", "t=\xC3\xA9"},
        {"UTF-8 cut off inside a sequence", "t=\xC3\xA9\xC3\xA8 \xE2\x82",
         "t=\xC3\xA9\xC3\xA8 \xEF\xBF\xBD\xEF\xBF\xBD"},
        {"UTF-16 with half a pair", "\xFF\xFEt\0\x3D\xD8=\0"s, "t\xEF\xBF\xBD="},
        {"UTF-16, low byte first", "\xFF\xFEt\0=\0\xAC\x20"s, "t=\xE2\x82\xAC"},
        {"UTF-16, high byte first", "\xFE\xFF\0t\0=\x20\xAC"s, "t=\xE2\x82\xAC"},
        {"UTF-16 with half a unit at the end", "\xFF\xFEt\0="s, "t"},
        {"ANSI", "t=caf\xE9 \x80", "t=caf\xC3\xA9 \xE2\x82\xAC"},
        {"zeros of a lost cluster", "a=1\n\0\0b=2"s, "a=1\n\n\nb=2"},
    };
    for (const FileText& c : cases) {
        const std::span<const uint8_t> bytes(reinterpret_cast<const uint8_t*>(c.bytes.data()), c.bytes.size());
        EXPECT_EQ(textFromFileBytes(bytes), c.text) << c.what;
    }
    setAnsiDecoder([](std::string_view) { return std::string("from the system"); });
    const uint8_t ansi[] = {0xE9};
    EXPECT_EQ(textFromFileBytes(ansi), "from the system");
    setAnsiDecoder(nullptr);
    EXPECT_EQ(textFromFileBytes(ansi), "\xC3\xA9");
}

}  // namespace
}  // namespace glimmer
