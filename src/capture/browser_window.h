#pragma once

namespace glimmer {

/// The render area (HWND) of the browser in front; null when there is none. Looked for in this order, where a frame is
/// a window of class "Chrome_WidgetWin_0" and an area one of class "Chrome_RenderWidgetHostHWND":
/// 1. the first area among the children of the first frame among the children of the foreground window;
/// 2. as today's browsers and the programs built on them nest it, with a frame of class "Chrome_WidgetWin_" and any
///    number: if the foreground window is a frame or has one at any depth, its largest visible area at any depth. (A
///    side bar or the developer tools have areas of their own.)
/// The area itself is empty in those browsers, and only says where on the screen the page is.
void* findChromeRenderWidget();

}  // namespace glimmer
