#include "output/places/file_name_template.h"

#include <gtest/gtest.h>

#include <fstream>

#include "common/files.h"
#include "common/text.h"
#include "support/scratch_folder.h"

namespace glimmer {
namespace {

class FixedClock : public Clock {
public:
    LocalTime now() override { return {2009, 3, 7, 4, 5, 6}; }
};

struct Expansion {
    const char* story;
    const char* text;
    const char* address;
    const char* title;
    int32_t number;
    int32_t padding;  // 0: off
    std::string name;
    int32_t next;
};

TEST(FileNameTemplate, Expansions) {
    const std::string long300(300, 'x');
    const std::vector<Expansion> table{
        {"number", "%n", "", "", 7, 3, "007", 8},
        {"number wider than the padding", "%n", "", "", 12345, 3, "12345", 12346},
        {"number without padding", "#%n", "", "", 7, 0, "#7", 8},
        {"padding of ten", "%n", "", "", 0, 10, "0000000000", 1},
        {"last number", "%n", "", "", 32767, 3, "32767", 1},
        {"no number used", "page", "", "", 7, 3, "page", 7},
        {"fresh installation in a browser", "Vistrane Screen Capture #%n - '%t' - %u", "http://a.b.c/x", "T", 1, 3,
         "Vistrane Screen Capture #001 - 'T' - a_b_c_x", 2},
        {"date and time", "%y-%m-%d %H%M%S", "", "", 1, 3, "2009-03-07 040506", 1},
        {"month is not minute", "%m %M %Y", "", "", 1, 3, "03 05 %Y", 1},
        {"every occurrence", "%t%t%n%n", "", "ab", 5, 2, "abab0505", 6},
        {"protocols in any case", "%u", "HTTPS://ftp://Http://a", "", 1, 3, "a", 1},
        {"protocol that another one hid, twice over", "%u", "hthttp://tp://a", "", 1, 3, "a", 1},
        {"protocol hidden twice", "%u", "hthtthttp://p://tp://a", "", 1, 3, "http___a", 1},
        {"title with forbidden characters", "%t", "", "a/b:c", 1, 3, "a_b_c", 1},
        {"all forbidden characters", "%t", "", "/.?:*|<>\\\"!", 1, 3, "_____I{}__!", 1},
        {"placeholder in the title, used", "%t", "", "%y", 1, 3, "2009", 1},
        {"number only in the title", "%t", "", "%n", 7, 3, "007", 7},
        {"empty", "%t", "", "", 1, 3, "Untitled", 1},
        {"blanks and underscores lose one underscore", "  %t ", "", "a__", 1, 3, "a_", 1},
        {"nothing left", "_", "", "", 1, 3, "Untitled", 1},
        {"cut", "%t", "", long300.c_str(), 1, 3, std::string(250, 'x'), 1},
        {"device", "%t", "", "con", 1, 3, "_con", 1},
        {"device with a number", "%t", "", "LPT\u00b2", 1, 3, "_LPT\u00b2", 1},
        {"no device", "%t", "", "COM10", 1, 3, "COM10", 1},
        {"control characters and turned reading order", "%t", "", "a\tb\x7f\u202egpj\u0085\n", 1, 3, "abgpj", 1},
        {"half a pair", "%t", "",
         "a\xed\xa0\x80"
         "b\xf0\x9f\x98\x80",
         1, 3, "ab\xf0\x9f\x98\x80", 1},
        {"out of the folder", "%t", "", "..\\..\\C:/x", 1, 3, "______C__x", 1},
        {"other scripts", "%t", "", "\xd0\x96\xe4\xb8\xad", 1, 3, "\xd0\x96\xe4\xb8\xad", 1},
    };
    for (const Expansion& row : table) {
        FileNameTemplate settings{row.text, row.number, row.padding > 0, row.padding};
        FixedClock clock;
        EXPECT_EQ(defaultFileName(settings, row.address, row.title, clock), row.name) << row.story;
        EXPECT_EQ(settings.nextNumber, row.next) << row.story;
    }
}

TEST(FreePath, NeverNamesAFileThatExistsNorAPathThatIsTooLong) {
    const test::ScratchFolder scratch("free path");
    const std::filesystem::path& folder = scratch.path();
    const auto make = [](const std::filesystem::path& path) { std::ofstream(path) << "x"; };
    EXPECT_EQ(freePath(folder, "a", ".png"), folder / "a.png");
    make(folder / "a.png");
    EXPECT_EQ(freePath(folder, "a", ".png"), folder / "a (2).png");
    std::filesystem::create_directory(folder / "a (2).png");
    EXPECT_EQ(freePath(folder, "a", ".png"), folder / "a (3).png");

    const std::string name(250, 'n');
    const std::filesystem::path first = freePath(folder, name, ".png");
    EXPECT_EQ(toUtf16(utf8FromPath(first)).size(), 259U);
    make(first);
    const std::filesystem::path second = freePath(folder, name, ".png");
    EXPECT_EQ(toUtf16(utf8FromPath(second)).size(), 259U);
    EXPECT_TRUE(utf8FromPath(second).ends_with("n (2).png"));
}

}  // namespace
}  // namespace glimmer
