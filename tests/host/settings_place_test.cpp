#include <gtest/gtest.h>

#include <filesystem>

#include "common/library_module.h"
#include "host/program/miscutils.h"
#include "support/scratch_folder.h"
#include "support/windows/native_tool.h"

namespace glimmer {
namespace {

namespace fs = std::filesystem;

// Such a link is what the system makes of the name for a program without a manifest, below Program Files.
TEST(SettingsPlace, ACopyOfTheUsersOwnIsNotTheLibrarysFolder) {
    const test::ScratchFolder scratch("virtual");
    const fs::path file = fs::path(libraryFolder()) / "vx_ie_settings.ini";
    for (const bool copied : {true, false}) {
        const fs::path copies = scratch.path() / (copied ? "AppData/Local/VirtualStore/x" : "AppData/Local/elsewhere");
        fs::create_directories(copies);
        ASSERT_EQ(test::runTool("touch " + test::quotedForTool(copies / "s.ini") + " && ln -sf " +
                                test::quotedForTool(copies / "s.ini") + " " + test::quotedForTool(file))
                      .code,
                  0);
        EXPECT_EQ(chooseSettingsPath(HostKind::InternetExplorer) == file.string(), !copied);
        fs::remove(file);
    }
}

}  // namespace
}  // namespace glimmer
