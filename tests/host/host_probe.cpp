// A host in a process of its own, for what can be seen once a process: host_probe TASK LIBRARY KIND. Ends with 0, or
// with the number of the line that found something else than it should.

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <memory>
#include <string>

#include "support/rgb_picture.h"
#include "support/windows/host_windows.h"
#include "support/windows/hosted_library.h"
#include "support/windows/import_patch.h"

namespace glimmer::test {
namespace {

#define PROBE(condition)                   \
    do {                                   \
        if (!(condition)) return __LINE__; \
    } while (false)

HRESULT WINAPI noFolder(HWND, int, HANDLE, DWORD, LPWSTR) { return E_FAIL; }

/// One capture and an orderly end, which writes the settings.
int settings(const std::wstring& library, uint8_t kind, bool withoutUserFolder) {
    const DialogRobot robot;  // some kinds of host are asked a question at the first capture
    const HMODULE module = LoadLibraryW(library.c_str());
    PROBE(module != nullptr);
    std::unique_ptr<ImportPatch> patch;
    if (withoutUserFolder) {
        SetEnvironmentVariableW(L"GLIMMERPAD_FOLDERS", nullptr);
        patch = std::make_unique<ImportPatch>(module, "shell32.dll", "SHGetFolderPathW", noFolder);
    }
    static const auto* host = new HostedLibrary({}, kind, library);  // never ends, so that the file stays
    host->capture(pngOf(patternPicture(4, 3)), GLIMMERPAD_LOAD);
    PROBE(host->resumeAvailable());
    host->hostShutdown();
    PROBE(!host->resumeAvailable());
    return 0;
}

/// Before the toolkit runs the library comes and goes; from then on it stays, whatever is freed.
int reload(const std::wstring& library) {
    const std::wstring name = library.substr(library.find_last_of(L'\\') + 1);
    for (int i = 0; i < 20; ++i) {
        const HMODULE module = LoadLibraryW(library.c_str());
        PROBE(module != nullptr);
        GlimmerpadInterface record = {};
        record.version = GLIMMERPAD_INTERFACE_VERSION;
        PROBE(exportOf<GlimmerpadInitLibrary>(module, "initLibrary")(&record, sizeof record) == 1);
        const GlimmerpadHostRecord host = {nullptr};
        GLIMMERPAD_ENTRY(GlimmerpadHostInit, record.hostInit)(GLIMMERPAD_INTERNET_EXPLORER, &host);
        uint8_t available = 1;
        PROBE(GLIMMERPAD_ENTRY(GlimmerpadHostExecute, record.hostExecute)(L"getResumeAvailable", &available, 0, 0) ==
              1);
        PROBE(available == 0);
        GLIMMERPAD_ENTRY(GlimmerpadHostShutdown, record.hostShutdown)();
        PROBE(FreeLibrary(module) != FALSE);
        PROBE(GetModuleHandleW(name.c_str()) == nullptr);
    }
    const RgbPicture picture = patternPicture(20, 10);
    HMODULE first = nullptr;
    for (int i = 0; i < 3; ++i) {
        {
            const HostedLibrary host({}, GLIMMERPAD_INTERNET_EXPLORER, library);
            PROBE(first == nullptr || host.module == first);
            first = host.module;
            host.capture(pngOf(picture), GLIMMERPAD_ENCODE_IMAGE);
            PROBE(pictureOf(host.encodedContent()) == picture);
        }
        PROBE(GetModuleHandleW(name.c_str()) == first);
        pump();
    }
    return 0;
}

/// A host that ends without a word while the editor stands on the screen.
int leave(const std::wstring& library) {
    const DialogRobot robot;
    static const auto* host = new HostedLibrary({}, GLIMMERPAD_INTERNET_EXPLORER, library);
    host->capture(pngOf(patternPicture(40, 30)), GLIMMERPAD_EDIT);
    PROBE(pumpUntil([] { return mainWindow() != nullptr && IsWindowVisible(mainWindow()) != FALSE; }, "the editor"));
    return 0;
}

}  // namespace
}  // namespace glimmer::test

int wmain(int count, wchar_t** arguments) {
    if (count != 4) return 1;
    const std::wstring task = arguments[1];
    const std::wstring library = arguments[2];
    const auto kind = static_cast<uint8_t>(std::stoi(arguments[3]));
    if (task == L"settings") return glimmer::test::settings(library, kind, false);
    if (task == L"settings-without-user-folder") return glimmer::test::settings(library, kind, true);
    if (task == L"reload") return glimmer::test::reload(library);
    if (task == L"leave") return glimmer::test::leave(library);
    return 1;
}
