// SPDX-License-Identifier: MIT
#include "windows/private/x11_pasteboards.h"

#include <utility>
#include <vector>

#include "windows/private/latin1.h"
#include "windows/private/x11_connection.h"

namespace cocoa {

namespace {
/// No field takes more, and an owner with more would hand it over in pieces.
constexpr size_t longest_text = 64UL * 1024;
/// Long for a program that lives, short for a user who waits.
constexpr double patience = 2;

bool is_before(xcb_timestamp_t time, xcb_timestamp_t other) {
  return static_cast<int32_t>(time - other) < 0;
}
}  // namespace

xcb_atom_t X11Pasteboards::selectionOf(Pasteboard pasteboard) const {
  return pasteboard == Pasteboard::copied ? connection_.atoms().clipboard : xcb_atom_t{XCB_ATOM_PRIMARY};
}

std::optional<X11Pasteboards::Offer>* X11Pasteboards::offerOf(xcb_atom_t selection) {
  for (const Pasteboard pasteboard : {Pasteboard::copied, Pasteboard::selected}) {
    if (selectionOf(pasteboard) == selection)
      return &offers_[static_cast<size_t>(pasteboard)];
  }
  return nullptr;
}

xcb_window_t X11Pasteboards::makeWindow() const {
  const xcb_window_t window = xcb_generate_id(connection_.get());
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window, connection_.root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  return window;
}

// Giving

void X11Pasteboards::offer(Pasteboard pasteboard, std::string text, xcb_timestamp_t time) {
  if (owner_ == XCB_WINDOW_NONE)
    owner_ = makeWindow();
  const xcb_atom_t selection = selectionOf(pasteboard);
  offers_[static_cast<size_t>(pasteboard)] = Offer{std::move(text), time};
  xcb_set_selection_owner(connection_.get(), owner_, selection, time);
  // Somebody may have offered something later than the user's act that we come from.
  const unsigned int sequence = xcb_get_selection_owner(connection_.get(), selection).sequence;
  connection_.expect(sequence, [this, selection](const void* reply) {
    const auto* current = static_cast<const xcb_get_selection_owner_reply_t*>(reply);
    if (!current || current->owner != owner_)
      offerOf(selection)->reset();
  });
  connection_.flush();
}

bool X11Pasteboards::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_SELECTION_CLEAR:
      handleClear(reinterpret_cast<const xcb_selection_clear_event_t&>(event));
      return true;
    case XCB_SELECTION_REQUEST:
      handleRequest(reinterpret_cast<const xcb_selection_request_event_t&>(event));
      return true;
    case XCB_SELECTION_NOTIFY:
      handleNotify(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
      return true;
    default:
      return false;
  }
}

void X11Pasteboards::handleClear(const xcb_selection_clear_event_t& event) {
  std::optional<Offer>* offer = offerOf(event.selection);
  // We may have offered another text since.
  if (offer && *offer && !is_before(event.time, (*offer)->since))
    offer->reset();
}

void X11Pasteboards::handleRequest(const xcb_selection_request_event_t& event) {
  xcb_selection_notify_event_t answer{};
  answer.response_type = XCB_SELECTION_NOTIFY;
  answer.time = event.time;
  answer.requestor = event.requestor;
  answer.selection = event.selection;
  answer.target = event.target;
  answer.property = XCB_ATOM_NONE;
  const std::optional<Offer>* offer = offerOf(event.selection);
  // Very old programs name no property and look for the answer under the target's name.
  const xcb_atom_t property = event.property == XCB_ATOM_NONE ? event.target : event.property;
  const bool in_time = offer && *offer &&
                       (event.time == XCB_CURRENT_TIME || (*offer)->since == XCB_CURRENT_TIME ||
                        !is_before(event.time, (*offer)->since));
  if (in_time && serve(**offer, event.requestor, property, event.target))
    answer.property = property;
  std::array<char, 32> bytes{};
  static_assert(sizeof answer <= bytes.size());
  std::copy_n(reinterpret_cast<const char*>(&answer), sizeof answer, bytes.begin());
  xcb_send_event(connection_.get(), 0, event.requestor, 0, bytes.data());
}

bool X11Pasteboards::serve(const Offer& offer, xcb_window_t requestor, xcb_atom_t property,
                           xcb_atom_t target) const {
  const X11Atoms& atoms = connection_.atoms();
  const auto put = [&](xcb_atom_t type, uint8_t bits, size_t count, const void* data) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, requestor, property, type, bits,
                        static_cast<uint32_t>(count), data);
    return true;
  };
  if (target == atoms.targets) {
    const std::array targets{atoms.targets, atoms.timestamp, atoms.utf8_string, atoms.utf8_text,
                             xcb_atom_t{XCB_ATOM_STRING}};
    return put(XCB_ATOM_ATOM, 32, targets.size(), targets.data());
  }
  if (target == atoms.timestamp)
    return put(XCB_ATOM_INTEGER, 32, 1, &offer.since);
  constexpr size_t request_header = 32;
  if (offer.text.size() + request_header > connection_.longestRequest() * 4)
    return false;
  if (target == atoms.utf8_string || target == atoms.utf8_text)
    return put(target, 8, offer.text.size(), offer.text.data());
  if (target != XCB_ATOM_STRING)
    return false;
  const std::string latin1 = latin1_of_utf8(offer.text);
  return put(XCB_ATOM_STRING, 8, latin1.size(), latin1.data());
}

// Taking

void X11Pasteboards::request(Pasteboard pasteboard, WindowSystem::UseText use, xcb_timestamp_t time,
                             double now) {
  if (const auto& own = offers_[static_cast<size_t>(pasteboard)]) {
    own_answers_.push_back({std::move(use), own->text});
    connection_.wake();
    return;
  }
  const xcb_window_t window = makeWindow();
  const auto [entry, added] =
      requests_.emplace(window, Request{pasteboard, std::move(use), time, now + patience});
  convert(window, entry->second, connection_.atoms().utf8_string);
}

void X11Pasteboards::convert(xcb_window_t window, const Request& request, xcb_atom_t target) const {
  xcb_convert_selection(connection_.get(), window, selectionOf(request.pasteboard), target,
                        connection_.atoms().utf8_text, request.time);
  connection_.flush();
}

void X11Pasteboards::handleNotify(const xcb_selection_notify_event_t& event) {
  const xcb_window_t window = event.requestor;
  const auto found = requests_.find(window);
  if (found == requests_.end())
    return;
  if (event.property == XCB_ATOM_NONE) {
    if (std::exchange(found->second.asked_for_latin1, true)) {
      finish(window, std::nullopt);
    } else {
      convert(window, found->second, XCB_ATOM_STRING);
    }
    return;
  }
  const unsigned int sequence = xcb_get_property(connection_.get(), 0, window, event.property, XCB_ATOM_ANY,
                                                 0, static_cast<uint32_t>(longest_text / 4))
                                    .sequence;
  connection_.expect(sequence, [this, window](const void* reply) {
    handleProperty(window, static_cast<const xcb_get_property_reply_t*>(reply));
  });
}

void X11Pasteboards::handleProperty(xcb_window_t window, const xcb_get_property_reply_t* reply) {
  const X11Atoms& atoms = connection_.atoms();
  // Too much for one property comes in pieces, announced by another type.
  if (!reply || reply->format != 8 || reply->bytes_after > 0) {
    finish(window, std::nullopt);
    return;
  }
  const std::string text(static_cast<const char*>(xcb_get_property_value(reply)),
                         static_cast<size_t>(xcb_get_property_value_length(reply)));
  if (reply->type == XCB_ATOM_STRING) {
    finish(window, utf8_of_latin1(text));
  } else if (reply->type == atoms.utf8_string || reply->type == atoms.utf8_text) {
    finish(window, text);
  } else {
    finish(window, std::nullopt);
  }
}

void X11Pasteboards::finish(xcb_window_t window, std::optional<std::string> text) {
  const auto found = requests_.find(window);
  if (found == requests_.end())
    return;
  const WindowSystem::UseText use = std::move(found->second.use);
  requests_.erase(found);
  xcb_destroy_window(connection_.get(), window);
  connection_.flush();
  use(std::move(text));
}

bool X11Pasteboards::tellUnanswered(double now) {
  bool any = !own_answers_.empty();
  for (Answer& answer : std::exchange(own_answers_, {}))
    answer.use(std::move(answer.text));
  std::vector<xcb_window_t> late;
  for (const auto& [window, request] : requests_) {
    if (now >= request.deadline)
      late.push_back(window);
  }
  for (const xcb_window_t window : late) {
    any = true;
    finish(window, std::nullopt);
  }
  return any;
}

}  // namespace cocoa
