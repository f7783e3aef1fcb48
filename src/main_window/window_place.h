#pragma once

class wxFrame;
class wxSplitterWindow;
class wxWindow;

namespace glimmer {

class TMainToolbar;

// Where the main window stands, how wide its left panel is and how its tool bar looks, from one run to the next.

void restorePlace(wxFrame& window);
void restoreToolbar(TMainToolbar& toolbar);
/// Shows the panel beside the rest of the window, as wide as it was, or the rest alone.
void showLeftPanel(wxSplitterWindow& splitter, wxWindow& panel, wxWindow& rest, bool show);
void storePlace(const wxFrame& window, const TMainToolbar& toolbar, const wxSplitterWindow& splitter);

}  // namespace glimmer
