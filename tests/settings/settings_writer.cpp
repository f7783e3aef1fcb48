// Raises a counter in a settings file and saves after each step; the exit code is the number of failed saves. Two of
// these at once are a test of the store.
//   settings_writer FILE SECTION STEPS

#include <cstdlib>
#include <string>

#include "settings/cached_mem_ini_file.h"

int wmain(int count, wchar_t** arguments) {
    if (count < 4) return 100;
    const std::wstring wide(arguments[2]);
    std::string section;
    for (const wchar_t c : wide) section.push_back(static_cast<char>(c));
    const auto steps = static_cast<int>(wcstol(arguments[3], nullptr, 10));
    glimmer::TCachedMemIniFile store{std::filesystem::path(arguments[1])};
    int failed = 0;
    for (int i = 0; i < steps; ++i) {
        store.writeInteger(section, "count", i + 1);
        store.writeBool(section, "step" + std::to_string(i), true);
        if (!store.save()) ++failed;
    }
    return failed;
}
