#include "platform/x11_windows.h"

#include <xcb/xcb.h>

#include <QString>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace ostrel {

namespace {

constexpr std::uint32_t kMostWords = 65536;  // of a property

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

struct Disconnect {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// The windows of one display.
class Display {
 public:
  Display() : connection_(xcb_connect(nullptr, &screen_)) {}

  bool Raise(const QString& title) const {
    if (xcb_connection_has_error(connection_.get()) != 0) return false;
    const xcb_window_t root = Root();
    if (root == XCB_NONE) return false;
    const QByteArray list = Property(root, Atom("_NET_CLIENT_LIST"));
    std::vector<xcb_window_t> windows(static_cast<std::size_t>(list.size()) / sizeof(xcb_window_t));
    if (windows.empty()) return false;  // no window manager
    std::memcpy(windows.data(), list.constData(), windows.size() * sizeof(xcb_window_t));
    for (const xcb_window_t window : windows) {
      if (Title(window).compare(title, Qt::CaseInsensitive) == 0) return Activate(root, window);
    }
    return false;
  }

 private:
  xcb_window_t Root() const {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
    for (int n = 0; n < screen_ && screens.rem > 1; ++n) xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data->root : XCB_NONE;
  }

  xcb_atom_t Atom(const char* name) const {
    const auto asked =
        xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection_.get(), asked, nullptr));
    return reply ? reply->atom : XCB_NONE;
  }

  QByteArray Property(xcb_window_t window, xcb_atom_t name, xcb_atom_t* type = nullptr) const {
    const auto asked = xcb_get_property(connection_.get(), 0, window, name,
                                        XCB_GET_PROPERTY_TYPE_ANY, 0, kMostWords);
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_.get(), asked, nullptr));
    if (!reply) return {};  // the window may have gone meanwhile
    if (type != nullptr) *type = reply->type;
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
  }

  QString Title(xcb_window_t window) const {
    const QByteArray title = Property(window, Atom("_NET_WM_NAME"));
    if (!title.isEmpty()) return QString::fromUtf8(title);
    xcb_atom_t type = XCB_NONE;
    const QByteArray old = Property(window, XCB_ATOM_WM_NAME, &type);
    return type == XCB_ATOM_STRING ? QString::fromLatin1(old) : QString::fromUtf8(old);
  }

  bool Activate(xcb_window_t root, xcb_window_t window) const {
    constexpr std::uint32_t kAskedByUser = 2;
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = Atom("_NET_ACTIVE_WINDOW");
    event.data.data32[0] = kAskedByUser;
    event.data.data32[1] = XCB_CURRENT_TIME;
    const auto sent = xcb_send_event_checked(
        connection_.get(), 0, root,
        XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
        reinterpret_cast<const char*>(&event));
    const Owned<xcb_generic_error_t> failed(xcb_request_check(connection_.get(), sent));
    return failed == nullptr;
  }

  int screen_ = 0;
  std::unique_ptr<xcb_connection_t, Disconnect> connection_;
};

}  // namespace

bool RaiseX11Window(const std::string& title) {
  const char* display = std::getenv("DISPLAY");
  return display != nullptr && *display != 0 && Display().Raise(QString::fromStdString(title));
}

}  // namespace ostrel
