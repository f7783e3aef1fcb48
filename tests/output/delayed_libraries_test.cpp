// Libraries of the system that are loaded at the first call of one of their functions: a first call that the linker has
// lost ends the program.

#include <gtest/gtest.h>

#include <windows.h>
// After windows.h, which they need.
#include <commdlg.h>
#include <mmsystem.h>
#include <oleacc.h>
#include <winspool.h>

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

}  // namespace
}  // namespace glimmer
