#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "capture/capture_request.h"
#include "host/program/tray_icon.h"
#include "settings/options.h"

class wxWindow;

// Captures of the screen that the user asks for: what is taken, what follows, and the menus and keys that ask.

namespace glimmer {

/// Takes what is asked for, writes its file and has the controller do what follows. Tells the user what goes wrong.
CaptureOutcome runCapture(const CaptureRequest& request);

/// All captures that a menu offers, the presets last.
std::vector<TrayItem> captureItems();
/// Shows them below a button of the main window.
void showCaptureMenu(wxWindow& button);

/// The hot keys of the presets, registered for one window (HWND) as long as the object lives and again whenever the
/// options change. `report` is told, in a sentence, of keys that another program holds; not from inside the
/// constructor, where they wait for reportTaken().
class PresetKeys {
public:
    /// Smallest number of a WM_HOTKEY message that is one of these.
    static constexpr int firstId = 0x100;

    PresetKeys(void* window, std::function<void(const std::string&)> report);
    ~PresetKeys();
    PresetKeys(const PresetKeys&) = delete;
    PresetKeys& operator=(const PresetKeys&) = delete;
    PresetKeys(PresetKeys&&) = delete;
    PresetKeys& operator=(PresetKeys&&) = delete;

    void pressed(int id) const;
    void reportTaken();

private:
    void registerAll();
    void releaseAll();

    void* window_;
    std::function<void(const std::string&)> report_;
    std::vector<CapturePreset> presets_;
    std::string taken_;  ///< a line for each key that could not be had
    OptionsListener listener_;
};

}  // namespace glimmer
