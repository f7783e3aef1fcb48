#pragma once

class wxFrame;

namespace glimmer {

/// Brings a window to the front and makes it active, restored when it was minimised; in its stead the dialog that it
/// waits for, if there is one. Only when it is shown.
void bringWindowForward(wxFrame& frame);

}  // namespace glimmer
