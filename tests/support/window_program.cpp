// A program with one window and nothing in it, for tests that need another program on the desktop.
//
//   kestrix_test_window [title [file]]
//
// It opens a window of that title and writes its working directory to that file once the window is
// there. Without a title its window has the name of its program file, up to the last point: a copy
// of it under the name of a companion stands in for that companion. Then the file is the one that
// KESTRIX_TEST_WINDOW_FILE names. It runs until it is killed or its display goes, and ten minutes
// at most.

#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

xcb_atom_t Atom(xcb_connection_t* xcb, const char* name) {
  const auto length = static_cast<std::uint16_t>(std::strlen(name));
  xcb_intern_atom_reply_t* reply =
      xcb_intern_atom_reply(xcb, xcb_intern_atom(xcb, 0, length, name), nullptr);
  const xcb_atom_t atom = reply != nullptr ? reply->atom : static_cast<xcb_atom_t>(XCB_NONE);
  std::free(reply);
  return atom;
}

void SetText(xcb_connection_t* xcb, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             const std::string& text) {
  xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, property, type, 8,
                      static_cast<std::uint32_t>(text.size()), text.data());
}

xcb_window_t OpenWindow(xcb_connection_t* xcb, const std::string& title) {
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
  const xcb_window_t window = xcb_generate_id(xcb);
  const std::uint32_t values[] = {screen->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
  xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, screen->root, 40, 40, 320, 200, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                    XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
  // A window that is titled only in the old way must be found as well.
  if (std::getenv("KESTRIX_TEST_WINDOW_OLD_TITLE") == nullptr)
    SetText(xcb, window, Atom(xcb, "_NET_WM_NAME"), Atom(xcb, "UTF8_STRING"), title);
  SetText(xcb, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, title);
  // It takes the keyboard: flag 1 says that the next value counts.
  const std::uint32_t hints[9] = {1, 1};
  xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32,
                      9, hints);
  xcb_map_window(xcb, window);
  xcb_flush(xcb);
  return window;
}

bool IsOpen(const xcb_generic_event_t* event) {
  return (event->response_type & 0x7f) == XCB_MAP_NOTIFY;
}

void WriteWorkingDirectory(const char* file) {
  // Beside it and renamed, so that whoever waits for the file finds it whole.
  const std::string name = file;
  std::ofstream(name + ".new") << std::filesystem::current_path().string();
  std::filesystem::rename(name + ".new", name);
}

}  // namespace

int main(int argc, char** argv) {
  alarm(600);
  const std::string title = argc > 1 ? argv[1] : std::filesystem::path(argv[0]).stem().string();
  const char* file = argc > 2 ? argv[2] : std::getenv("KESTRIX_TEST_WINDOW_FILE");

  xcb_connection_t* xcb = xcb_connect(nullptr, nullptr);
  if (xcb_connection_has_error(xcb) != 0) return EXIT_FAILURE;
  OpenWindow(xcb, title);
  while (xcb_generic_event_t* event = xcb_wait_for_event(xcb)) {
    if (IsOpen(event) && file != nullptr) WriteWorkingDirectory(file);
    std::free(event);
  }
  xcb_disconnect(xcb);
  return EXIT_SUCCESS;
}
