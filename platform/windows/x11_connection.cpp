// SPDX-License-Identifier: MIT
#include "windows/private/x11_connection.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>

#include "foundation/NSLog.h"

namespace cocoa {

std::unique_ptr<X11Connection> X11Connection::open(const char* display_name) {
  int screen_number = 0;
  xcb_connection_t* raw = xcb_connect(display_name, &screen_number);
  std::unique_ptr<X11Connection> connection(new X11Connection(raw));
  if (connection->lost()) {
    const char* name = display_name ? display_name : std::getenv("DISPLAY");
    NSLog("There is no X display \"%s\" to show windows on.", name ? name : "");
    return nullptr;
  }
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(raw));
  for (int i = 0; i < screen_number && screens.rem > 1; ++i)
    xcb_screen_next(&screens);
  connection->screen_ = screens.data;
  if (!connection->chooseVisuals() || !connection->makePollable())
    return nullptr;
  xcb_prefetch_maximum_request_length(raw);
  connection->atoms_ = intern_atoms(raw, screen_number);
  connection->longest_request_ = xcb_get_maximum_request_length(raw);
  return connection;
}

X11Connection::X11Connection(xcb_connection_t* connection) : connection_(connection) {}

X11Connection::~X11Connection() {
  xcb_disconnect(connection_);
}

bool X11Connection::chooseVisuals() {
  const xcb_setup_t* setup = xcb_get_setup(connection_);
  opaque_ = find_visual(setup, screen_, 24);
  translucent_ = find_visual(setup, screen_, 32);
  if (!opaque_) {
    NSLog("The X display has no 24-bit pixels in this machine's byte order; no windows can be shown on it.");
    return false;
  }
  for (X11Visual* visual : {&opaque_, &translucent_}) {
    if (!*visual)
      continue;
    visual->colormap = screen_->default_colormap;
    if (visual->id == screen_->root_visual)
      continue;
    visual->colormap = xcb_generate_id(connection_);
    xcb_create_colormap(connection_, XCB_COLORMAP_ALLOC_NONE, visual->colormap, screen_->root, visual->id);
  }
  return true;
}

bool X11Connection::makePollable() {
  poll_ = UniqueFd(epoll_create1(EPOLL_CLOEXEC));
  wake_ = UniqueFd(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  bool watches = poll_ && wake_;
  for (const int descriptor : {xcb_get_file_descriptor(connection_), wake_.get()}) {
    epoll_event interest{};
    interest.events = EPOLLIN;
    interest.data.fd = descriptor;
    watches = watches && epoll_ctl(poll_.get(), EPOLL_CTL_ADD, descriptor, &interest) == 0;
  }
  if (!watches)
    NSLog("The system refused the descriptors to wait for the X display with.");
  return watches;
}

void X11Connection::wake() {
  const uint64_t one = 1;
  // Fails only when the counter is full, and then it is readable already.
  [[maybe_unused]] const ssize_t written = write(wake_.get(), &one, sizeof one);
}

void X11Connection::ignoreFromNowOn() {
  epoll_ctl(poll_.get(), EPOLL_CTL_DEL, xcb_get_file_descriptor(connection_), nullptr);
}

void X11Connection::beginDispatch() {
  uint64_t count = 0;
  [[maybe_unused]] const ssize_t got = read(wake_.get(), &count, sizeof count);
  read_server_ = true;
}

XcbPtr<xcb_generic_event_t> X11Connection::nextEvent() {
  if (!taken_in_.empty()) {
    XcbPtr<xcb_generic_event_t> event = std::move(taken_in_.front());
    taken_in_.pop_front();
    return event;
  }
  const bool read_server = std::exchange(read_server_, false);
  return XcbPtr<xcb_generic_event_t>(read_server ? xcb_poll_for_event(connection_)
                                                 : xcb_poll_for_queued_event(connection_));
}

void X11Connection::flush() {
  xcb_flush(connection_);
  noticeWhatWasTakenIn();
}

void X11Connection::noticeWhatWasTakenIn() {
  xcb_generic_event_t* event = xcb_poll_for_queued_event(connection_);
  if (event)
    taken_in_.emplace_back(event);
  if (takeInReplies() || event)
    wake();
}

void X11Connection::expect(unsigned int sequence, std::function<void(const void*)> use) {
  expected_.push_back({sequence, std::move(use)});
}

bool X11Connection::takeInReplies() {
  const size_t before = arrived_.size();
  while (!expected_.empty()) {
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (!lost() && !xcb_poll_for_reply(connection_, expected_.front().sequence, &reply, &error))
      break;
    const XcbPtr<xcb_generic_error_t> owned_error(error);
    arrived_.push_back(std::move(expected_.front()));
    arrived_.back().reply.reset(reply);
    expected_.pop_front();
  }
  return arrived_.size() > before;
}

bool X11Connection::collectReplies() {
  takeInReplies();
  const bool any = !arrived_.empty();
  while (!arrived_.empty()) {
    const Expected arrived = std::move(arrived_.front());
    arrived_.pop_front();
    arrived.use(arrived.reply.get());
  }
  return any;
}

bool X11Connection::hasCompositor() {
  const auto cookie = xcb_get_selection_owner(connection_, atoms_.compositor);
  const XcbPtr<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(connection_, cookie, nullptr));
  noticeWhatWasTakenIn();
  return reply && reply->owner != XCB_WINDOW_NONE;
}

bool X11Connection::hasProperty(xcb_window_t window, xcb_atom_t property) {
  const auto cookie = xcb_get_property(connection_, 0, window, property, XCB_ATOM_ANY, 0, 0);
  const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  return reply && reply->type != XCB_ATOM_NONE;
}

bool X11Connection::hasWindowManager() {
  const bool has = hasProperty(root(), atoms_.net_supporting_wm_check);
  noticeWhatWasTakenIn();
  return has;
}

bool X11Connection::managerUnderstands(xcb_atom_t message) {
  constexpr uint32_t most = 4096;  // words
  const auto cookie = xcb_get_property(connection_, 0, root(), atoms_.net_supported, XCB_ATOM_ATOM, 0, most);
  const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  noticeWhatWasTakenIn();
  if (!reply || reply->format != 32)
    return false;
  const auto* first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  const xcb_atom_t* last = first + xcb_get_property_value_length(reply.get()) / 4;
  return std::find(first, last, message) != last;
}

xcb_window_t X11Connection::topLevelOf(xcb_window_t window) {
  xcb_window_t top = window;
  // No real nesting comes near it; a chain that somebody changes while we walk must not hold us.
  constexpr int deepest = 64;
  for (int depth = 0; depth < deepest && !hasProperty(top, atoms_.wm_state); ++depth) {
    const XcbPtr<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, top), nullptr));
    if (!tree || tree->parent == tree->root || tree->parent == XCB_WINDOW_NONE)
      break;
    top = tree->parent;
  }
  noticeWhatWasTakenIn();
  return top;
}

std::optional<X11Connection::Place> X11Connection::originOf(xcb_window_t window) {
  const auto cookie = xcb_translate_coordinates(connection_, window, root(), 0, 0);
  const XcbPtr<xcb_translate_coordinates_reply_t> reply(
      xcb_translate_coordinates_reply(connection_, cookie, nullptr));
  noticeWhatWasTakenIn();
  if (!reply)
    return std::nullopt;
  return Place{reply->dst_x, reply->dst_y};
}

std::string X11Connection::rootProperty(xcb_atom_t property) {
  constexpr uint32_t longest = 1U << 18;  // words: one megabyte of resources
  const auto cookie = xcb_get_property(connection_, 0, root(), property, XCB_ATOM_STRING, 0, longest);
  const XcbPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->format != 8)
    return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<size_t>(xcb_get_property_value_length(reply.get()))};
}

}  // namespace cocoa
