#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "glimmerpad.h"
#include "support/not_copied.h"

namespace glimmer::test {

/// The folder of the programs as they ship, and the library in it.
std::filesystem::path programFolder();
std::filesystem::path libraryPath();

/// Settings of a user who has seen the questions of the first day.
inline const std::string knownUser =
    "[\\Software\\Glimmerpad for Firefox\\General]\nchkFirstPromotionIEIntegration=0\n";

template <class Function>
Function exportOf(HMODULE module, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

/// The library as a host has it: loaded, its record fetched and the host introduced. One at a time, since the
/// callback has no place for a context. Ends with hostShutdown().
///
/// As Internet Explorer's container, which is the default here, it keeps its settings beside itself, where they are
/// removed before and after, and asks no question at the first capture.
class HostedLibrary : NotCopied {
public:
    explicit HostedLibrary(const std::string& settings = {}, uint8_t kind = GLIMMERPAD_INTERNET_EXPLORER,
                           const std::filesystem::path& path = libraryPath());
    ~HostedLibrary();

    HMODULE module = nullptr;  ///< null, after a failed test, when it cannot be loaded
    GlimmerpadHostInit hostInit = nullptr;
    GlimmerpadHostCapture hostCapture = nullptr;
    GlimmerpadHostShutdown hostShutdown = nullptr;
    GlimmerpadHostExecute hostExecute = nullptr;
    GlimmerpadHostFinishCapture hostFinishCapture = nullptr;

    /// hostCapture() with an address and a title of no importance.
    void capture(const std::vector<uint8_t>& png, int32_t action, int32_t width = 0, int32_t height = 0) const {
        hostCapture(L"http://example.com/page", L"A page", L"", png.data(), action, width, height);
    }
    [[nodiscard]] int32_t execute(const wchar_t* command, void* out = nullptr, const void* arg1 = nullptr,
                                  const void* arg2 = nullptr) const {
        return hostExecute(command, out, reinterpret_cast<uintptr_t>(arg1), reinterpret_cast<uintptr_t>(arg2));
    }
    /// "JSONFunction" with a text as payload.
    [[nodiscard]] int32_t json(const wchar_t* function, std::string_view text) const;
    /// The content of the last capture with action 8 or 9, copied.
    [[nodiscard]] std::vector<uint8_t> encodedContent() const;
    [[nodiscard]] bool resumeAvailable() const;

    /// The settings file's new content. To be followed by hostShutdown(); what is written there is read at the next
    /// use.
    void writeSettings(const std::string& text) const;

    /// What the library asked of the host since the last call, as "name value".
    static std::vector<std::wstring> takeNotices();
    /// Has something done inside the callback, with the notice; nothing ends that.
    static void onNotice(std::function<void(const std::wstring&)> action);

private:
    std::filesystem::path settings_;
};

}  // namespace glimmer::test
