#pragma once

#include <xcb/xcb.h>

#include <QPoint>
#include <QWidget>

namespace kestrix {

/// Another client of the display, which sends keys to a window of ours and moves it.
class OtherClient {
 public:
  OtherClient() : xcb_(::xcb_connect(nullptr, nullptr)) {}
  OtherClient(const OtherClient&) = delete;
  OtherClient& operator=(const OtherClient&) = delete;
  ~OtherClient() { ::xcb_disconnect(xcb_); }

  void Strike(WId window, xcb_keycode_t key) {
    xcb_key_press_event_t event = {};
    event.detail = key;
    event.event = event.child = static_cast<xcb_window_t>(window);
    event.root = ::xcb_setup_roots_iterator(::xcb_get_setup(xcb_)).data->root;
    event.same_screen = 1;
    for (const int type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
      event.response_type = static_cast<uint8_t>(type);
      ::xcb_send_event(xcb_, 0, event.event, XCB_EVENT_MASK_KEY_PRESS,
                       reinterpret_cast<const char*>(&event));
    }
    ::xcb_flush(xcb_);
  }
  void Move(WId window, const QPoint& place) {
    const uint32_t values[] = {static_cast<uint32_t>(place.x()), static_cast<uint32_t>(place.y())};
    ::xcb_configure_window(xcb_, static_cast<xcb_window_t>(window),
                           XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values);
    ::xcb_flush(xcb_);
  }

 private:
  xcb_connection_t* xcb_;
};

}  // namespace kestrix
