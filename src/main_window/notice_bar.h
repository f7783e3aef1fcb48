#pragma once

#include <functional>
#include <string>
#include <vector>

class wxFrame;

namespace glimmer {

struct NoticeButton {
    const char* name;
    std::string caption;
    std::function<void()> act;  ///< after the bar was closed; may be empty
};

/// Shows a notice in a bar below the window's toolbar, where it keeps nobody from working: a line of text and buttons,
/// each of which closes the bar. Does nothing while a bar of that window name stands there already. All UTF-8.
void showNoticeBar(wxFrame& window, const char* name, const std::string& text, std::vector<NoticeButton> buttons);
/// Closes the bar of that name, if there is one.
void closeNoticeBar(wxFrame& window, const char* name);

}  // namespace glimmer
