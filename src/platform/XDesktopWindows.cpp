#include "platform/XDesktopWindows.h"

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <cstdlib>
#include <vector>

#include "platform/Failure.h"

namespace kestrix {
namespace {

struct Freed {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Freed>;

using Windows = std::vector<xcb_window_t>;

/// Longer than any title that is asked for, in units of four bytes.
constexpr uint32_t kTitleUnits = 1024;
/// Top-level windows stand at most this deep below the root, in the frames of a window manager.
constexpr int kDepth = 3;

}  // namespace

/// One connection to the server. Its requests go out together and their replies are read after, so
/// that a look at a hundred windows costs one round trip for each question, not a hundred.
class XDesktopWindows::Connection {
 public:
  Connection() : display_(qgetenv("DISPLAY")), xcb_(::xcb_connect(nullptr, &screen_)) {
    if (Dead()) return;
    known_ =
        ::xcb_ewmh_init_atoms_replies(&ewmh_, ::xcb_ewmh_init_atoms(xcb_, &ewmh_), nullptr) != 0;
  }
  Q_DISABLE_COPY_MOVE(Connection)
  ~Connection() {
    if (known_) ::xcb_ewmh_connection_wipe(&ewmh_);
    ::xcb_disconnect(xcb_);
  }

  [[nodiscard]] bool Dead() const { return ::xcb_connection_has_error(xcb_) != 0; }
  /// Whether it still is the connection to the display that the environment names.
  [[nodiscard]] bool Usable() const { return known_ && !Dead() && display_ == qgetenv("DISPLAY"); }

  xcb_window_t Find(const QString& title) {
    const xcb_window_t listed = Titled(Listed(), title);
    const xcb_window_t found = listed != XCB_NONE ? listed : TitledInTree(title);
    DropEvents();
    return found;
  }

  void Activate(xcb_window_t window) {
    if (ManagerActivates())
      ::xcb_ewmh_request_change_active_window(
          &ewmh_, screen_, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER, XCB_CURRENT_TIME, XCB_NONE);
    else
      RaiseAndFocus(window);
    // Waits until the server has taken all of it.
    const Reply<xcb_get_input_focus_reply_t> done(
        ::xcb_get_input_focus_reply(xcb_, ::xcb_get_input_focus(xcb_), nullptr));
    DropEvents();
  }

 private:
  [[nodiscard]] xcb_window_t Root() const { return ewmh_.screens[screen_]->root; }

  /// The windows that the window manager says it manages; none where nobody says so.
  [[nodiscard]] Windows Listed() {
    xcb_ewmh_get_windows_reply_t list;
    if (::xcb_ewmh_get_client_list_reply(&ewmh_, ::xcb_ewmh_get_client_list(&ewmh_, screen_), &list,
                                         nullptr) == 0)
      return {};
    Windows windows(list.windows, list.windows + list.windows_len);
    ::xcb_ewmh_get_windows_reply_wipe(&list);
    return windows;
  }

  [[nodiscard]] xcb_window_t TitledInTree(const QString& title) {
    Windows level = {Root()};
    for (int depth = 0; depth < kDepth && !level.empty(); ++depth) {
      level = MappedChildren(level);
      const xcb_window_t found = Titled(level, title);
      if (found != XCB_NONE) return found;
    }
    return XCB_NONE;
  }

  [[nodiscard]] Windows MappedChildren(const Windows& parents) {
    Windows children;
    std::vector<xcb_query_tree_cookie_t> asked;
    for (const xcb_window_t parent : parents) asked.push_back(::xcb_query_tree(xcb_, parent));
    for (const xcb_query_tree_cookie_t cookie : asked) {
      const Reply<xcb_query_tree_reply_t> tree(::xcb_query_tree_reply(xcb_, cookie, nullptr));
      if (!tree) continue;
      const xcb_window_t* first = ::xcb_query_tree_children(tree.get());
      children.insert(children.end(), first, first + ::xcb_query_tree_children_length(tree.get()));
    }
    return OnlyMapped(children);
  }

  [[nodiscard]] Windows OnlyMapped(const Windows& windows) {
    std::vector<xcb_get_window_attributes_cookie_t> asked;
    for (const xcb_window_t window : windows)
      asked.push_back(::xcb_get_window_attributes(xcb_, window));
    Windows mapped;
    for (size_t i = 0; i < windows.size(); ++i) {
      const Reply<xcb_get_window_attributes_reply_t> attributes(
          ::xcb_get_window_attributes_reply(xcb_, asked[i], nullptr));
      if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE)
        mapped.push_back(windows[i]);
    }
    return mapped;
  }

  /// The first of `windows` with exactly that title.
  [[nodiscard]] xcb_window_t Titled(const Windows& windows, const QString& title) {
    std::vector<xcb_get_property_cookie_t> names;
    std::vector<xcb_get_property_cookie_t> old_names;
    for (const xcb_window_t window : windows) {
      names.push_back(AskText(window, ewmh_._NET_WM_NAME));
      old_names.push_back(AskText(window, XCB_ATOM_WM_NAME));
    }
    xcb_window_t found = XCB_NONE;
    for (size_t i = 0; i < windows.size(); ++i) {
      const QString name = Text(names[i]);
      const QString old_name = Text(old_names[i]);
      if (found == XCB_NONE && (name.isNull() ? old_name : name) == title) found = windows[i];
    }
    return found;
  }

  [[nodiscard]] xcb_get_property_cookie_t AskText(xcb_window_t window, xcb_atom_t property) {
    return ::xcb_get_property(xcb_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kTitleUnits);
  }

  /// A text property; null where the window has none.
  [[nodiscard]] QString Text(xcb_get_property_cookie_t cookie) {
    const Reply<xcb_get_property_reply_t> reply(::xcb_get_property_reply(xcb_, cookie, nullptr));
    if (!reply || reply->type == XCB_NONE || reply->format != 8 || reply->bytes_after != 0)
      return {};
    const QByteArray bytes(static_cast<const char*>(::xcb_get_property_value(reply.get())),
                           ::xcb_get_property_value_length(reply.get()));
    const QString text =
        reply->type == XCB_ATOM_STRING ? QString::fromLatin1(bytes) : QString::fromUtf8(bytes);
    return text.isNull() ? QStringLiteral("") : text;
  }

  /// A list that a dead window manager left behind says nothing: its check window must live.
  [[nodiscard]] bool ManagerActivates() {
    xcb_window_t check = XCB_NONE;
    if (::xcb_ewmh_get_supporting_wm_check_reply(
            &ewmh_, ::xcb_ewmh_get_supporting_wm_check(&ewmh_, Root()), &check, nullptr) == 0)
      return false;
    const Reply<xcb_get_window_attributes_reply_t> alive(
        ::xcb_get_window_attributes_reply(xcb_, ::xcb_get_window_attributes(xcb_, check), nullptr));
    return alive != nullptr && SupportsActivation();
  }

  [[nodiscard]] bool SupportsActivation() {
    xcb_ewmh_get_atoms_reply_t supported;
    if (::xcb_ewmh_get_supported_reply(&ewmh_, ::xcb_ewmh_get_supported(&ewmh_, screen_),
                                       &supported, nullptr) == 0)
      return false;
    bool activates = false;
    for (uint32_t i = 0; i < supported.atoms_len; ++i)
      activates = activates || supported.atoms[i] == ewmh_._NET_ACTIVE_WINDOW;
    ::xcb_ewmh_get_atoms_reply_wipe(&supported);
    return activates;
  }

  void RaiseAndFocus(xcb_window_t window) {
    constexpr uint32_t kAbove = XCB_STACK_MODE_ABOVE;
    ::xcb_map_window(xcb_, window);
    for (xcb_window_t frame = window; frame != XCB_NONE && frame != Root(); frame = ParentOf(frame))
      ::xcb_configure_window(xcb_, frame, XCB_CONFIG_WINDOW_STACK_MODE, &kAbove);
    ::xcb_set_input_focus(xcb_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  }

  [[nodiscard]] xcb_window_t ParentOf(xcb_window_t window) {
    const Reply<xcb_query_tree_reply_t> tree(
        ::xcb_query_tree_reply(xcb_, ::xcb_query_tree(xcb_, window), nullptr));
    return tree ? tree->parent : XCB_NONE;
  }

  /// Errors about windows that died meanwhile arrive here, and are no news.
  void DropEvents() {
    while (const Reply<xcb_generic_event_t> event{::xcb_poll_for_event(xcb_)}) {
    }
  }

  QByteArray display_;
  int screen_ = 0;
  xcb_connection_t* xcb_;
  xcb_ewmh_connection_t ewmh_ = {};
  bool known_ = false;
};

XDesktopWindows::XDesktopWindows() = default;
XDesktopWindows::~XDesktopWindows() = default;

XDesktopWindows::Connection* XDesktopWindows::Connected() {
  if (connection_ && connection_->Usable()) return connection_.get();
  connection_.reset();
  // Without a name the library would take a display that nobody gave us.
  if (qEnvironmentVariableIsEmpty("DISPLAY")) return nullptr;
  connection_ = std::make_unique<Connection>();
  if (!connection_->Usable()) connection_.reset();
  return connection_.get();
}

quint32 XDesktopWindows::Find(const QString& title) {
  // Untitled windows are many, and none of them is meant.
  if (title.isEmpty()) return 0;
  // A connection often shows that it died only when it is used: then once more with a new one.
  for (int attempt = 0; attempt < 2; ++attempt) {
    Connection* connection = Connected();
    if (connection == nullptr) return 0;
    const quint32 window = connection->Find(title);
    if (!connection->Dead()) return window;
  }
  return 0;
}

void XDesktopWindows::Activate(const QString& title) {
  const quint32 window = Find(title);
  if (window == 0)
    throw Failure(failure::kInvalidCall, QStringLiteral("There is no window \"%1\".").arg(title));
  connection_->Activate(window);
}

}  // namespace kestrix
