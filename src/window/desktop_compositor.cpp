#include "window/desktop_compositor.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string>

namespace lirenza::window {
namespace {

// The screen of DISPLAY (":0.1" is screen 1); the first when it names none.
int ScreenNumber() {
  const char* display = std::getenv("DISPLAY");
  if (!display) return 0;
  const std::string name(display);
  const auto colon = name.rfind(':');
  const auto dot = name.find('.', colon == std::string::npos ? 0 : colon);
  return dot == std::string::npos ? 0 : std::atoi(name.c_str() + dot + 1);
}

bool X11Composites() {
  auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
  xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
  if (!connection) return true;
  const std::string selection = "_NET_WM_CM_S" + std::to_string(ScreenNumber());
  const xcb_intern_atom_cookie_t atomCookie =
      xcb_intern_atom(connection, 0, static_cast<uint16_t>(selection.size()), selection.c_str());
  std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> atom(
      xcb_intern_atom_reply(connection, atomCookie, nullptr), &std::free);
  if (!atom) return true;
  std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
      xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr),
      &std::free);
  return owner && owner->owner != XCB_NONE;
}

}  // namespace

bool DesktopComposites() {
  return QGuiApplication::platformName() == QLatin1String("xcb") ? X11Composites() : true;
}

}  // namespace lirenza::window
