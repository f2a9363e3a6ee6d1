#pragma once
// Whether the desktop composites windows, so a see-through window shows what lies
// under it. An X server without a compositing manager shows black instead.

namespace lirenza::window {

// X11: a compositing manager owns the screen's _NET_WM_CM_Sn selection. Wayland always
// composites; so, for our purpose, does an offscreen or unknown platform.
bool DesktopComposites();

}  // namespace lirenza::window
