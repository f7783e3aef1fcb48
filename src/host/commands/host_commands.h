#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace glimmer {

/// What a host passes along with a command. Each command knows what its arguments are; the pointers are the host's.
struct CommandArguments {
    void* out = nullptr;
    uintptr_t arg1 = 0;
    uintptr_t arg2 = 0;

    /// The first or second argument as the text it points at; empty for null.
    [[nodiscard]] std::string text1() const;
    [[nodiscard]] int32_t number1() const { return static_cast<int32_t>(arg1); }
    [[nodiscard]] int32_t number2() const { return static_cast<int32_t>(arg2); }
    /// Stores a byte where `out` points.
    void putByte(uint8_t value) const { *static_cast<uint8_t*>(out) = value; }
};

/// Runs a command by its exact name. 1 when it was done, 0 when not; an unknown name is reported to the user.
int32_t executeCommand(std::string_view name, const CommandArguments& arguments);

// The commands by theme; executeCommand() holds the table.

// commands_window.cpp
int32_t commandResumeEditing(const CommandArguments& arguments);
int32_t commandGetResumeAvailable(const CommandArguments& arguments);
int32_t commandOpenSettings(const CommandArguments& arguments);
int32_t commandOpenFile(const CommandArguments& arguments);
int32_t commandOpenFromClipboard(const CommandArguments& arguments);
int32_t commandFGWindowPatch(const CommandArguments& arguments);
int32_t commandActivateApp(const CommandArguments& arguments);

// commands_capture.cpp
int32_t commandGetBitmapDC(const CommandArguments& arguments);
int32_t commandGrabTB(const CommandArguments& arguments);
int32_t commandCaptureBrowser(const CommandArguments& arguments);
int32_t commandGetEncodedContent(const CommandArguments& arguments);
int32_t commandStoreEncodedContent(const CommandArguments& arguments);

// commands_json.cpp
int32_t commandJSONFunctionZ(const CommandArguments& arguments);
int32_t commandJSONFunction(const CommandArguments& arguments);

// commands_service.cpp
int32_t commandIECaptureOptions(const CommandArguments& arguments);
int32_t commandDownloadUpdate(const CommandArguments& arguments);
int32_t commandInstallUpdate(const CommandArguments& arguments);
int32_t commandIntegrateIntoIE(const CommandArguments& arguments);
int32_t commandIsUpdateAvailable(const CommandArguments& arguments);
int32_t commandSetAddonVersion(const CommandArguments& arguments);
int32_t commandProcessInfo(const CommandArguments& arguments);
int32_t commandGetCheckForIEUpdates(const CommandArguments& arguments);

}  // namespace glimmer
