// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "x_client.h"

namespace test_support {

/// Another program that copies to and pastes from the X server's selections.
class PasteboardClient {
 public:
  explicit PasteboardClient(const std::string& display) : client_(display) {
    window_ = client_.make_window(0, 0, 1, 1);
  }

  XClient& client() { return client_; }

  // Giving.

  /// The type and the bytes that it answers requests for a target with; none refuses.
  struct Content {
    std::string type;
    std::string bytes;
    uint8_t format = 8;
  };
  using Serve = std::function<std::optional<Content>(const std::string& target)>;
  void own(const std::string& selection, Serve serve) {
    serve_ = std::move(serve);
    xcb_set_selection_owner(client_.connection(), window_, client_.atom(selection), XCB_CURRENT_TIME);
    client_.sync();
  }
  void own_text(const std::string& selection, const std::string& text) {
    own(selection, [text](const std::string& target) -> std::optional<Content> {
      if (target != "UTF8_STRING")
        return std::nullopt;
      return Content{"UTF8_STRING", text};
    });
  }
  bool owns(const std::string& selection) { return owner(selection) == window_; }
  xcb_window_t owner(const std::string& selection) {
    auto* reply = xcb_get_selection_owner_reply(
        client_.connection(), xcb_get_selection_owner(client_.connection(), client_.atom(selection)),
        nullptr);
    const xcb_window_t owner = reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    std::free(reply);
    return owner;
  }
  int requests() const { return requests_; }

  // Taking.

  void ask(const std::string& selection, const std::string& target) {
    answered_ = refused_ = false;
    bytes_.clear();
    xcb_convert_selection(client_.connection(), window_, client_.atom(selection), client_.atom(target),
                          client_.atom("ANSWER"), XCB_CURRENT_TIME);
    client_.sync();
  }
  bool answered() const { return answered_; }
  bool refused() const { return refused_; }
  const std::string& bytes() const { return bytes_; }
  const std::string& type() const { return type_; }
  std::vector<uint32_t> words() const {
    std::vector<uint32_t> words(bytes_.size() / 4);
    std::copy_n(bytes_.data(), words.size() * 4, reinterpret_cast<char*>(words.data()));
    return words;
  }

  /// Deals with the events that have come. To be called while something is waited for.
  void serve() {
    while (auto* event = client_.poll_event()) {
      const std::unique_ptr<xcb_generic_event_t, decltype(&std::free)> owned(event, &std::free);
      switch (event->response_type & 0x7f) {
        case XCB_SELECTION_REQUEST:
          answer(*reinterpret_cast<const xcb_selection_request_event_t*>(event));
          break;
        case XCB_SELECTION_NOTIFY:
          take(*reinterpret_cast<const xcb_selection_notify_event_t*>(event));
          break;
        default:
          break;
      }
    }
  }

 private:
  void answer(const xcb_selection_request_event_t& request) {
    ++requests_;
    const std::optional<Content> content = serve_(name_of(request.target));
    if (content) {
      const auto elements = static_cast<uint32_t>(content->bytes.size() * 8 / content->format);
      xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                          client_.atom(content->type), content->format, elements, content->bytes.data());
    }
    xcb_selection_notify_event_t reply{};
    reply.response_type = XCB_SELECTION_NOTIFY;
    reply.time = request.time;
    reply.requestor = request.requestor;
    reply.selection = request.selection;
    reply.target = request.target;
    reply.property = content ? request.property : xcb_atom_t{XCB_ATOM_NONE};
    std::array<char, 32> bytes{};
    std::copy_n(reinterpret_cast<const char*>(&reply), sizeof reply, bytes.begin());
    xcb_send_event(client_.connection(), 0, request.requestor, 0, bytes.data());
    client_.sync();
  }

  void take(const xcb_selection_notify_event_t& notify) {
    answered_ = true;
    refused_ = notify.property == XCB_ATOM_NONE;
    if (refused_)
      return;
    auto* reply = xcb_get_property_reply(
        client_.connection(),
        xcb_get_property(client_.connection(), 1, window_, notify.property, XCB_ATOM_ANY, 0, 1U << 20U),
        nullptr);
    if (reply) {
      bytes_.assign(static_cast<const char*>(xcb_get_property_value(reply)),
                    static_cast<size_t>(xcb_get_property_value_length(reply)));
      type_ = name_of(reply->type);
    }
    std::free(reply);
  }

  std::string name_of(xcb_atom_t atom) {
    auto* reply =
        xcb_get_atom_name_reply(client_.connection(), xcb_get_atom_name(client_.connection(), atom), nullptr);
    std::string name;
    if (reply)
      name.assign(xcb_get_atom_name_name(reply), static_cast<size_t>(xcb_get_atom_name_name_length(reply)));
    std::free(reply);
    return name;
  }

  XClient client_;
  xcb_window_t window_;
  Serve serve_;
  int requests_ = 0;
  bool answered_ = false;
  bool refused_ = false;
  std::string bytes_;
  std::string type_;
};

}  // namespace test_support
