// What a host sees before it hands anything over: the library's exports and record, its settings file, its coming and
// going.

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "support/child_process.h"
#include "support/scratch_folder.h"
#include "support/windows/hosted_library.h"
#include "support/windows/test_account.h"

namespace glimmer::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned longestProbe = 40000;  // milliseconds

class Library : public testing::Test {
protected:
    Library() : module_(LoadLibraryW(libraryPath().c_str())) {}
    ~Library() override { FreeLibrary(module_); }
    void SetUp() override { ASSERT_NE(module_, nullptr) << GetLastError(); }

    [[nodiscard]] int32_t initLibrary(GlimmerpadInterface* record, uint32_t size) const {
        return exportOf<GlimmerpadInitLibrary>(module_, "initLibrary")(record, size);
    }

    HMODULE module_;
};

TEST_F(Library, ExportsItsTwoFunctionsUndecorated) {
    for (const char* name : {"initLibrary", "runZKApplication"}) EXPECT_NE(GetProcAddress(module_, name), nullptr);
    for (const char* name : {"_initLibrary", "_initLibrary@8", "DllMain"})
        EXPECT_EQ(GetProcAddress(module_, name), nullptr) << name;
}

TEST_F(Library, FillsAsMuchOfTheRecordAsTheHostSays) {
    constexpr uint8_t untouched = 0xA5;
    for (const uint32_t size : {24U, 23U, 8U, 4U, 0U, 1000U, 0xFFFFFFFFU}) {
        std::array<uint8_t, 64> room{};
        room.fill(untouched);
        auto* record = reinterpret_cast<GlimmerpadInterface*>(room.data());
        record->version = GLIMMERPAD_INTERFACE_VERSION;
        EXPECT_EQ(initLibrary(record, size), 1) << size;
        EXPECT_EQ(record->version, GLIMMERPAD_INTERFACE_VERSION);
        for (size_t i = std::max<size_t>(4, std::min<size_t>(size, sizeof *record)); i < room.size(); ++i)
            ASSERT_EQ(room[i], untouched) << "byte " << i << " for size " << size;
        if (size < sizeof *record) continue;
        // Five functions, all of this library.
        for (const uint32_t word : {record->hostInit, record->hostCapture, record->hostShutdown, record->hostExecute,
                                    record->hostFinishCapture}) {
            HMODULE owner = nullptr;
            GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                               reinterpret_cast<LPCWSTR>(static_cast<uintptr_t>(word)), &owner);
            EXPECT_EQ(owner, module_);
        }
    }
}

TEST_F(Library, RefusesOtherVersionsAndWritesNothing) {
    EXPECT_EQ(initLibrary(nullptr, 24), 0);
    for (const uint32_t version : {0U, 4U, 6U, 0x10005U, 0x05000000U}) {
        GlimmerpadInterface record = {version, 1, 2, 3, 4, 5};
        const GlimmerpadInterface before = record;
        EXPECT_EQ(initLibrary(&record, sizeof record), 0) << version;
        EXPECT_EQ(std::memcmp(&record, &before, sizeof record), 0) << version;
    }
}

std::vector<std::string> calls;
void GLIMMERPAD_NOTIFY noteCall(const char* name, const wchar_t*) { calls.emplace_back(name); }

TEST_F(Library, KeepsTheCallbackOfTheLastHostRecord) {
    GlimmerpadInterface record = {};
    record.version = GLIMMERPAD_INTERFACE_VERSION;
    ASSERT_EQ(initLibrary(&record, sizeof record), 1);
    const auto hostInit = GLIMMERPAD_ENTRY(GlimmerpadHostInit, record.hostInit);
    const auto hostExecute = GLIMMERPAD_ENTRY(GlimmerpadHostExecute, record.hostExecute);
    const auto callsOfOneCommand = [hostExecute] {
        calls.clear();
        EXPECT_EQ(hostExecute(L"integrateIntoIE", nullptr, 0, 0), 1);
        return calls.size();
    };
    const GlimmerpadHostRecord withCallback = {noteCall};
    const GlimmerpadHostRecord withoutCallback = {nullptr};
    hostInit(99, &withCallback);
    EXPECT_EQ(callsOfOneCommand(), 1U);
    hostInit(99, nullptr);  // nothing at all happens
    EXPECT_EQ(callsOfOneCommand(), 1U);
    hostInit(99, &withoutCallback);
    EXPECT_EQ(callsOfOneCommand(), 0U);
    hostInit(99, &withCallback);
    ASSERT_EQ(initLibrary(&record, sizeof record), 1);
    EXPECT_EQ(callsOfOneCommand(), 0U) << "a new handshake forgets the callback";
    GLIMMERPAD_ENTRY(GlimmerpadHostShutdown, record.hostShutdown)();
    std::error_code ignored;
    fs::remove(programFolder() / "def_settings.ini", ignored);
}

#ifdef __i386__
/// Calls hostExecute with a stack pointer that is `shift` bytes away from what the compiler expects.
int32_t executeWithStackAt(uint32_t shift, GlimmerpadHostExecute function, const wchar_t* command, void* out) {
    const uintptr_t call[] = {shift, reinterpret_cast<uintptr_t>(function), reinterpret_cast<uintptr_t>(command),
                              reinterpret_cast<uintptr_t>(out)};
    int32_t result = 0;
    asm volatile(
        "movl %%esp, %%esi\n\t"
        "andl $-16, %%esp\n\t"
        "subl (%%ebx), %%esp\n\t"
        "pushl $0\n\t"
        "pushl $0\n\t"
        "pushl 12(%%ebx)\n\t"
        "pushl 8(%%ebx)\n\t"
        "call *4(%%ebx)\n\t"
        "movl %%esi, %%esp"
        : "=a"(result)
        : "b"(call)
        : "ecx", "edx", "esi", "edi", "memory", "cc");
    return result;
}

TEST_F(Library, StandsAnyAlignmentOfTheHostsStack) {
    const HostedLibrary host;
    for (uint32_t shift = 0; shift < 32; shift += 4) {
        HDC surface = nullptr;
        uint8_t flag = 9;
        EXPECT_EQ(executeWithStackAt(shift, host.hostExecute, L"getCheckForIEUpdates", &flag), 1) << shift;
        EXPECT_EQ(flag, 0);
        EXPECT_EQ(executeWithStackAt(shift, host.hostExecute, L"getBitmapDC", &surface), 0) << shift;
    }
}
#endif

fs::path userFolder() { return userFolders() / "AppData/Roaming"; }

/// Runs a copy of the probe under a name, with a copy of the library in a folder.
int probe(const char* task, const fs::path& program, const fs::path& libraryFolder, int kind) {
    fs::create_directories(program.parent_path());
    fs::create_directories(libraryFolder);
    fs::copy_file(testProgram("host_probe"), program, fs::copy_options::overwrite_existing);
    const fs::path library = libraryFolder / "glimmerpad.dll";
    fs::copy_file(libraryPath(), library, fs::copy_options::overwrite_existing);
    ChildProcess process(program, {task, library, std::to_string(kind)});
    return process.wait(longestProbe).value_or(-1);
}

TEST(SettingsFile, StandsWhereTheKindOfHostWantsIt) {
    const ScratchFolder scratch("host");
    struct Case {
        const char* why;
        const char* program;
        const char* library;  ///< folder
        int kind;
        const char* file;
        bool inUserFolder;
        const char* task = "settings";
    };
    const char* const profile = "p/Ab.default/ExTensions/x@y";
    for (const Case& c : {
             Case{"on its own", "glimmerpad.exe", "lib", 0, "lib/zk_settings.ini", false},
             Case{"named both", "SeaMonkey-Thunderbird.exe", profile, 1, "p/Ab.default/vx_tb_settings.ini", false},
             Case{"Chrome", "seamonkey.exe", "lib", 5, "Vistrane/vx_chrome_settings.ini", true},
             Case{"no user folder", "run/x.exe", "lib", 5, "run/tmp/Vistrane/vx_chrome_settings.ini", false,
                  "settings-without-user-folder"},
         }) {
        const fs::path folder = scratch.path() / c.why;
        const fs::path file = (c.inUserFolder ? userFolder() : folder) / c.file;
        std::error_code ignored;
        if (c.inUserFolder) fs::remove(file, ignored);
        EXPECT_EQ(probe(c.task, folder / c.program, folder / c.library, c.kind), 0) << c.why;
        EXPECT_TRUE(fs::is_regular_file(file)) << c.why << ": " << file;
        size_t others = 0;
        for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
            others += entry.path().extension() == ".ini" && entry.path() != file ? 1 : 0;
        EXPECT_EQ(others, 0U) << c.why;
        if (c.inUserFolder) fs::remove(file, ignored);
    }
}

// A folder in the file's place is what refuses even an administrator.
TEST(SettingsFile, GoesToTheUserWhereTheLibrarysFolderRefusesIt) {
    struct Case {
        int kind;
        const char* name;
        const char* userFile;
    };
    for (const Case& c : {Case{0, "zk_settings.ini", "Glimmerpad/zk_settings.ini"},
                          Case{2, "vx_ie_settings.ini", "Vistrane/vx_ie_settings.ini"}}) {
        const ScratchFolder scratch("host");
        const fs::path file = userFolder() / c.userFile;
        std::error_code ignored;
        fs::remove(file, ignored);
        fs::create_directories(scratch.path() / c.name / "taken");
        EXPECT_EQ(probe("settings", scratch.path() / "x.exe", scratch.path(), c.kind), 0) << c.name;
        EXPECT_TRUE(fs::is_regular_file(file)) << file;
        fs::remove(file, ignored);
    }
}

TEST(ComingAndGoing, TheLibraryIsLoadedAndFreedManyTimes) {
    const ScratchFolder scratch("host");
    EXPECT_EQ(probe("reload", scratch.path() / "x.exe", scratch.path(), 2), 0);
}

TEST(ComingAndGoing, AHostMayEndWithoutAShutdown) {
    const ScratchFolder scratch("host");
    EXPECT_EQ(probe("leave", scratch.path() / "x.exe", scratch.path(), 2), 0);
}

}  // namespace
}  // namespace glimmer::test
