// Libraries of the system that are loaded at the first call of one of their functions: a first call that the linker has
// lost ends the program, and what lies beside the program under their names is not theirs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>
// After windows.h, which they need.
#include <commdlg.h>
#include <mmsystem.h>
#include <oleacc.h>
#include <winspool.h>

#include "support/child_process.h"
#include "support/windows/planted_libraries.h"

namespace glimmer {
namespace {

TEST(DelayedLibraries, AnswerAtTheirFirstCall) {
    EXPECT_NE(PlaySoundW(nullptr, nullptr, 0), FALSE);
    EXPECT_EQ(CommDlgExtendedError(), DWORD{0});

    wchar_t name[] = L"no printer has this name";
    HANDLE printer = nullptr;
    EXPECT_EQ(OpenPrinterW(name, &printer, nullptr), FALSE);

    IAccessible* desktop = nullptr;
    EXPECT_EQ(CreateStdAccessibleObject(GetDesktopWindow(), OBJID_CLIENT, IID_IAccessible,
                                        reinterpret_cast<void**>(&desktop)),
              S_OK);
    if (desktop != nullptr) desktop->Release();
}

TEST(DelayedLibraries, ComeFromTheSystemsFolderWhateverTheProgramsHolds) {
    const test::PlantedLibraries plants(test::testProgram("windows_files_test"),
                                        {L"winmm.dll", L"comdlg32.dll", L"winspool.drv", L"oleacc.dll"});
    test::ChildProcess program(plants.program(), {"--gtest_filter=DelayedLibraries.AnswerAtTheirFirstCall"});
    EXPECT_EQ(program.wait(60000), 0);
    EXPECT_THAT(plants.loaded(), testing::IsEmpty());
}

}  // namespace
}  // namespace glimmer
