#pragma once

#include "common/bitmap.h"

namespace glimmer {

/// What the screen shows of a window (HWND): its whole rectangle with scroll bars, layered windows included. Fails
/// when the window is gone or has no area.
Result<TBitmap> grabWindow(void* window);
/// The same for the client area alone.
Result<TBitmap> grabClientArea(void* window);

/// The render area of the browser in front: the first child of class "Chrome_RenderWidgetHostHWND" of the first
/// child of class "Chrome_WidgetWin_0" of the foreground window, or of the foreground window itself when it has no
/// such child but is of that class. Null when there is none.
void* findChromeRenderWidget();

}  // namespace glimmer
