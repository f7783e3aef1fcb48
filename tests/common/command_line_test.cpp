#include "common/command_line.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#ifdef _WIN32
// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on
#endif

namespace glimmer {
namespace {

TEST(CommandLine, AnArgumentComesBackAsItWas) {
    struct Row {
        const char* text;
        const char* quoted;
    };
    for (const Row& row : {Row{"", R"("")"}, Row{"C:\\a b\\c.png", R"("C:\a b\c.png")"}, Row{"C:\\", R"("C:\\")"},
                           Row{"a\\\\", R"("a\\\\")"}, Row{"say \"hi\"", R"("say \"hi\"")"},
                           Row{"a\\\"b", R"("a\\\"b")"}, Row{"a\\\\\"", R"("a\\\\\"")"}}) {
        const std::string quoted = quotedArgument(row.text);
        EXPECT_EQ(quoted, row.quoted);
#ifdef _WIN32
        const std::string line = "x " + quoted + " y";
        int count = 0;
        wchar_t** const found = CommandLineToArgvW(std::wstring(line.begin(), line.end()).c_str(), &count);
        ASSERT_EQ(count, 3) << line;
        EXPECT_EQ(std::wstring(found[1]), std::wstring(row.text, row.text + std::strlen(row.text)));
        LocalFree(found);
#endif
    }
}

}  // namespace
}  // namespace glimmer
