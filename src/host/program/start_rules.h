#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/host_kind.h"
#include "host/program/capture_action.h"
#include "main_window/display_state.h"

// The rules of the start-up and of the way of a capture that need no system: texts in, decisions out. All text is
// UTF-8, folders end with a backslash.

namespace glimmer {

/// The kind that a host proposes, refined: Firefox may be one of its relatives, told by the file name of the running
/// program. Other kinds are taken as they are.
HostKind refinedHostKind(HostKind proposed, std::string_view executableName);

/// Where the settings file of a kind of host lies.
struct SettingsPlace {
    enum class Where {
        LibraryFolderIfWritable,  ///< else the user's folder
        UserFolder,
        ProfileFolder,  ///< of the browser that the library was installed into
        LibraryFolder,
    };
    std::string_view fileName;
    Where where = Where::LibraryFolder;
    std::string_view userFolder;  ///< name below the user's application data; empty where it has none
};
SettingsPlace settingsPlace(HostKind kind);

/// The browser profile that a library lies in: what stands before "extensions" (in any case) in its folder, else the
/// folder itself.
std::string profileFolder(std::string_view libraryFolder);

/// What the standalone program's arguments ask for.
struct StartRequest {
    bool terminate = false;           ///< "-TERMINATE" first
    bool tray = false;                ///< "-TRAY" first: to the notification area, no window
    bool singleInstance = true;       ///< "-MULTI" neither first nor second
    std::optional<std::string> file;  ///< the first argument that is no switch, to be opened by this instance
};
StartRequest readArguments(const std::vector<std::string>& arguments);

/// What a second instance hands to the first: the command line from the first argument's text on, at most 10000
/// UTF-16 units of it, unparsed (a closing quote and later arguments stay); after the program's folder when it names
/// no folder itself. `fullPath`, unless it is empty, stands for the argument: the first has another current folder.
std::string handOverText(std::string_view commandLine, std::string_view firstArgument,
                         std::string_view executableFolder, std::string_view fullPath = {});
/// The file that a hand-over text names: what stands before its first quote, which no file name can hold.
std::string handedOverFile(std::string_view text);

/// A capture code: the action, and 100 for "without sound".
struct CaptureCode {
    CaptureAction action = CaptureAction::Edit;
    bool silent = false;
};
CaptureCode splitCaptureCode(int32_t code);

/// Whether a capture may bring the question about the integration into Internet Explorer, which is asked once: before
/// it is taken from a host that delivers it, or, in hosts that have another moment for it, when it is opened in the
/// editor.
enum class IntegrationMoment : uint8_t { Delivered, Edited };
bool offersIntegration(HostKind host, IntegrationMoment moment);

/// What the main window does after a capture whose action is done, or could not be begun.
enum class WindowMove : uint8_t {
    Leave,    ///< nothing
    Refresh,  ///< it brings its list up to date, wherever it is
    Show,     ///< it comes in front, and is no longer hidden
};
/// `made`: a document came of the capture. `hidden`: the user put the window away to see the browser.
WindowMove windowMoveAfter(CaptureAction action, bool made, DisplayState state, bool hidden, bool standalone);

}  // namespace glimmer
