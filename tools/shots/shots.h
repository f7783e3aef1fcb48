#pragma once

#include <wx/window.h>

#include <string>

/// Pictures of windows in each of their states, for looking at.
namespace glimmer::shots {

/// Writes what the screen shows where the window is, once it has painted itself; `path` has no extension.
void shoot(wxWindow& window, const std::string& path);
/// The same with so much of the screen around it (menus, windows that float).
void shootAround(wxWindow& window, const std::string& path, int margin);

// The groups of pictures; the names of the files begin with `prefix`. shots.cpp lists them.
void canvas(const std::string& prefix);
void dialogs(const std::string& prefix);
void mainWindow(const std::string& prefix);
void options(const std::string& prefix);
void recovery(const std::string& prefix);

}  // namespace glimmer::shots
