// SPDX-License-Identifier: MIT
#include "x_client.h"

#include <sys/uio.h>
#include <xcb/xcbext.h>
#include <xcb/xtest.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "x_server.h"

namespace test_support {

namespace {
struct Free {
  void operator()(void* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

struct BooksAnswer {
  uint32_t head, length, count, unused[5];
};

/// What the server's own books say: the X-Resource extension's requests for lists. The library fills in the
/// opcodes and the length.
Reply<void> ask_for_books(xcb_connection_t* connection, uint8_t request_number,
                          std::optional<uint32_t> argument) {
  struct {
    uint32_t head;
    uint32_t argument;
  } request{0, argument.value_or(0)};
  static xcb_extension_t extension{"X-Resource", 0};
  const xcb_protocol_request_t protocol{2, &extension, request_number, 0};
  // The two entries before the request's own are the library's to use, and the last is for padding.
  std::array<iovec, 4> parts{};
  parts[2] = {&request, argument ? sizeof request : sizeof request.head};
  const unsigned int sequence = xcb_send_request(connection, XCB_REQUEST_CHECKED, &parts[2], &protocol);
  return Reply<void>(xcb_wait_for_reply(connection, sequence, nullptr));
}
}  // namespace

XClient::XClient(const std::string& display) : connection_(xcb_connect(display.c_str(), nullptr)) {
  if (xcb_connection_has_error(connection_) == 0)
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

XClient::~XClient() {
  xcb_disconnect(connection_);
}

xcb_atom_t XClient::atom(std::string_view name) {
  const auto cookie = xcb_intern_atom(connection_, 0, static_cast<uint16_t>(name.size()), name.data());
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::string XClient::name_of(xcb_atom_t atom) {
  const Reply<xcb_get_atom_name_reply_t> reply(
      xcb_get_atom_name_reply(connection_, xcb_get_atom_name(connection_, atom), nullptr));
  if (!reply)
    return {};
  return {xcb_get_atom_name_name(reply.get()),
          static_cast<size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

void XClient::sync() {
  const Reply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

void XClient::send(int type, int detail, int x, int y) {
  xcb_test_fake_input(connection_, static_cast<uint8_t>(type), static_cast<uint8_t>(detail), XCB_CURRENT_TIME,
                      root_, static_cast<int16_t>(x), static_cast<int16_t>(y), 0);
}

void XClient::fake(int type, int detail, int x, int y) {
  send(type, detail, x, y);
  sync();
}

void XClient::point(int x, int y) {
  if (managed_ && std::exchange(released_, false))
    wait_for_manager();
  fake(XCB_MOTION_NOTIFY, 0, x, y);
}
void XClient::press(int button) {
  fake(XCB_BUTTON_PRESS, button);
  if (managed_)
    wait_for_manager();
}
void XClient::release(int button) {
  fake(XCB_BUTTON_RELEASE, button);
  released_ = true;
}
void XClient::click(int button) {
  press(button);
  release(button);
}
void XClient::double_click(int button) {
  if (managed_) {
    click(button);
    return click(button);
  }
  // In one go: a test that is not given the processor in between would click twice.
  for (const int type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE, XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
    send(type, button);
  sync();
}
void XClient::press_key(xcb_keysym_t keysym) {
  fake(XCB_KEY_PRESS, keycode_of(keysym));
}
void XClient::release_key(xcb_keysym_t keysym) {
  fake(XCB_KEY_RELEASE, keycode_of(keysym));
}
void XClient::type_key(xcb_keysym_t keysym) {
  press_key(keysym);
  release_key(keysym);
}

int XClient::keycode_of(xcb_keysym_t keysym) {
  const xcb_setup_t* setup = xcb_get_setup(connection_);
  const int first = setup->min_keycode;
  const auto cookie = xcb_get_keyboard_mapping(connection_, setup->min_keycode,
                                               static_cast<uint8_t>(setup->max_keycode - first + 1));
  const Reply<xcb_get_keyboard_mapping_reply_t> reply(
      xcb_get_keyboard_mapping_reply(connection_, cookie, nullptr));
  if (!reply)
    return 0;
  const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(reply.get());
  for (int i = 0; i < xcb_get_keyboard_mapping_keysyms_length(reply.get()); ++i) {
    if (keysyms[i] == keysym)
      return first + i / reply->keysyms_per_keycode;
  }
  return 0;
}

void XClient::iconify(xcb_window_t window) {
  constexpr uint32_t iconic = 3;
  send_to_manager(window, "WM_CHANGE_STATE", iconic);
}

xcb_window_t XClient::make_window(int x, int y, int width, int height, bool override_redirect) {
  const xcb_window_t window = xcb_generate_id(connection_);
  const std::vector<uint32_t> values{0x00204060, override_redirect ? 1U : 0U};
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, static_cast<int16_t>(x),
                    static_cast<int16_t>(y), static_cast<uint16_t>(width), static_cast<uint16_t>(height), 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                    XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
  sync();
  return window;
}

void XClient::destroy(xcb_window_t window) {
  xcb_destroy_window(connection_, window);
  sync();
}

void XClient::map(xcb_window_t window) {
  xcb_map_window(connection_, window);
  sync();
}

void XClient::unmap(xcb_window_t window) {
  xcb_unmap_window(connection_, window);
  sync();
}

void XClient::move(xcb_window_t window, int x, int y) {
  const std::vector<uint32_t> values{static_cast<uint32_t>(x), static_cast<uint32_t>(y)};
  xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, values.data());
  sync();
}

void XClient::resize(xcb_window_t window, int width, int height) {
  const std::vector<uint32_t> values{static_cast<uint32_t>(width), static_cast<uint32_t>(height)};
  xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
  sync();
}

void XClient::raise(xcb_window_t window) {
  const uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  sync();
}

void XClient::focus(xcb_window_t window) {
  xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
  sync();
}

void XClient::select_input(xcb_window_t window, uint32_t event_mask) {
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &event_mask);
  sync();
}

void XClient::send_protocol(xcb_window_t window, std::string_view protocol) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atom("WM_PROTOCOLS");
  message.data.data32[0] = atom(protocol);
  message.data.data32[1] = XCB_CURRENT_TIME;
  message.data.data32[2] = window;
  xcb_send_event(connection_, 0, window, 0, reinterpret_cast<const char*>(&message));
  sync();
}

bool XClient::wait_for_manager() {
  const xcb_window_t probe = make_window(0, 0, 10, 10, false);
  send_to_manager(probe, "_NET_REQUEST_FRAME_EXTENTS");
  const bool answered = wait_until([&] { return !property(probe, "_NET_FRAME_EXTENTS").empty(); });
  destroy(probe);
  return answered;
}

bool XClient::wait_for_owner(xcb_window_t window) {
  select_input(root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  xcb_client_message_event_t ping{};
  ping.response_type = XCB_CLIENT_MESSAGE;
  ping.format = 32;
  ping.window = window;
  ping.type = atom("WM_PROTOCOLS");
  ping.data.data32[0] = atom("_NET_WM_PING");
  ping.data.data32[1] = ++pings_;
  ping.data.data32[2] = window;
  xcb_send_event(connection_, 0, window, 0, reinterpret_cast<const char*>(&ping));
  sync();
  const auto is_answer = [&](const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_CLIENT_MESSAGE)
      return false;
    const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
    return message.type == ping.type && message.data.data32[0] == ping.data.data32[0] &&
           message.data.data32[1] == ping.data.data32[1];
  };
  return wait_until(
      [&] {
        bool answered = false;
        while (const Reply<xcb_generic_event_t> event{poll_event()})
          answered = answered || is_answer(*event);
        return answered;
      },
      {descriptor()});
}

void XClient::send_to_manager(xcb_window_t window, std::string_view type, uint32_t value) {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = atom(type);
  message.data.data32[0] = value;
  xcb_send_event(connection_, 0, root_,
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  sync();
}

void XClient::set_property(xcb_window_t window, std::string_view name, xcb_atom_t type,
                           std::string_view text) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), type, 8,
                      static_cast<uint32_t>(text.size()), text.data());
  sync();
}

void XClient::set_property(xcb_window_t window, std::string_view name, xcb_atom_t type,
                           const std::vector<uint32_t>& words) {
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(name), type, 32,
                      static_cast<uint32_t>(words.size()), words.data());
  sync();
}

std::optional<uint32_t> XClient::pixel(xcb_window_t window, int x, int y) {
  const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window, static_cast<int16_t>(x),
                                    static_cast<int16_t>(y), 1, 1, ~0U);
  const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection_, cookie, nullptr));
  if (!reply || xcb_get_image_data_length(reply.get()) < 4)
    return std::nullopt;
  uint32_t value = 0;
  std::memcpy(&value, xcb_get_image_data(reply.get()), sizeof value);
  return value & 0x00ffffff;
}

std::vector<uint32_t> XClient::pixels(xcb_window_t window, int width, int height) {
  const auto cookie = xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0,
                                    static_cast<uint16_t>(width), static_cast<uint16_t>(height), ~0U);
  const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(connection_, cookie, nullptr));
  if (!reply)
    return {};
  std::vector<uint32_t> result(static_cast<size_t>(xcb_get_image_data_length(reply.get())) / 4);
  std::memcpy(result.data(), xcb_get_image_data(reply.get()), result.size() * 4);
  for (uint32_t& pixel : result)
    pixel |= 0xff000000;
  return result;
}

xcb_window_t XClient::focused() {
  const Reply<xcb_get_input_focus_reply_t> reply(
      xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  return reply ? reply->focus : xcb_window_t{XCB_WINDOW_NONE};
}

bool XClient::viewable(xcb_window_t window) {
  const Reply<xcb_get_window_attributes_reply_t> reply(
      xcb_get_window_attributes_reply(connection_, xcb_get_window_attributes(connection_, window), nullptr));
  return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool XClient::exists(xcb_window_t window) {
  const Reply<xcb_get_geometry_reply_t> reply(
      xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  return reply != nullptr;
}

xcb_window_t XClient::parent_of(xcb_window_t window) {
  const Reply<xcb_query_tree_reply_t> reply(
      xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  return reply ? reply->parent : xcb_window_t{XCB_WINDOW_NONE};
}

std::vector<xcb_window_t> XClient::children(xcb_window_t window) {
  const Reply<xcb_query_tree_reply_t> reply(
      xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  if (!reply)
    return {};
  const xcb_window_t* first = xcb_query_tree_children(reply.get());
  return {first, first + xcb_query_tree_children_length(reply.get())};
}

XClient::Geometry XClient::geometry(xcb_window_t window) {
  const Reply<xcb_get_geometry_reply_t> size(
      xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
  const auto cookie = xcb_translate_coordinates(connection_, window, root_, 0, 0);
  const Reply<xcb_translate_coordinates_reply_t> place(
      xcb_translate_coordinates_reply(connection_, cookie, nullptr));
  if (!size || !place)
    return {};
  return {place->dst_x, place->dst_y, size->width, size->height};
}

std::string XClient::text_property(xcb_window_t window, std::string_view name) {
  const auto cookie = xcb_get_property(connection_, 0, window, atom(name), XCB_ATOM_ANY, 0, 4096);
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->format != 8)
    return {};
  return {static_cast<const char*>(xcb_get_property_value(reply.get())),
          static_cast<size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<uint32_t> XClient::property(xcb_window_t window, std::string_view name) {
  const auto cookie = xcb_get_property(connection_, 0, window, atom(name), XCB_ATOM_ANY, 0, 4096);
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->format != 32)
    return {};
  const auto* first = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

bool XClient::has_window_manager() {
  return !property(root_, "_NET_SUPPORTING_WM_CHECK").empty();
}

uint32_t XClient::client_count() {
  constexpr uint8_t query_clients = 1;
  const Reply<void> reply = ask_for_books(connection_, query_clients, {});
  return reply ? static_cast<const BooksAnswer*>(reply.get())->count : 0;
}

std::map<std::string, uint32_t> XClient::resources_of_client(uint32_t resource) {
  constexpr uint8_t query_client_resources = 2;
  struct Count {
    xcb_atom_t type;
    uint32_t count;
  };
  const Reply<void> reply = ask_for_books(connection_, query_client_resources, resource);
  std::map<std::string, uint32_t> counts;
  if (!reply)
    return counts;
  const auto* answer = static_cast<const BooksAnswer*>(reply.get());
  const auto* entries = reinterpret_cast<const Count*>(answer + 1);
  for (uint32_t i = 0; i < answer->count; ++i)
    counts[name_of(entries[i].type)] += entries[i].count;
  return counts;
}

}  // namespace test_support
