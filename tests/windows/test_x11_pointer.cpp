// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "windows/private/x11_connection.h"
#include "windows/private/x11_pointer.h"
#include "x_server.h"

// No device of a virtual server scrolls smoothly: the events of one are written here as they travel.

namespace cocoa {
namespace {

constexpr uint16_t pad = 11;  ///< the number of a device

/// An event in the memory in which the client library hands it over.
class Bytes {
 public:
  template <typename T>
  Bytes& add(const T& value) {
    const auto* first = reinterpret_cast<const uint8_t*>(&value);
    bytes_.insert(bytes_.end(), first, first + sizeof value);
    return *this;
  }
  template <typename Event>
  const Event& as() const {
    return *reinterpret_cast<const Event*>(bytes_.data());
  }

 private:
  std::vector<uint8_t> bytes_;
};

xcb_input_fp3232_t fixed(int32_t whole, uint32_t fraction = 0) {
  return {whole, fraction};
}

/// The scrolling of a device: valuator 3 down by 15 a notch, valuator 2 to the right by 10.
Bytes device_change() {
  xcb_input_device_changed_event_t event{};
  event.event_type = XCB_INPUT_DEVICE_CHANGED;
  event.sourceid = pad;
  event.num_classes = 2;
  const auto scroll = [](uint16_t number, uint16_t type, int32_t increment) {
    xcb_input_scroll_class_t axis{};
    axis.type = XCB_INPUT_DEVICE_CLASS_TYPE_SCROLL;
    axis.len = sizeof axis / 4;
    axis.sourceid = pad;
    axis.number = number;
    axis.scroll_type = type;
    axis.increment = fixed(increment);
    return axis;
  };
  Bytes bytes;
  bytes.add(event);
  bytes.add(scroll(3, XCB_INPUT_SCROLL_TYPE_VERTICAL, 15));
  bytes.add(scroll(2, XCB_INPUT_SCROLL_TYPE_HORIZONTAL, 10));
  return bytes;
}

xcb_input_motion_event_t pointing() {
  xcb_input_motion_event_t event{};
  event.event_type = XCB_INPUT_MOTION;
  event.sourceid = pad;
  event.event = 0x400001;
  event.event_x = 10 * 65536 + 32768;
  event.event_y = 20 * 65536;
  event.root_x = 110 * 65536 + 32768;
  event.root_y = 70 * 65536 + 16384;
  event.time = 4242;
  event.mods.effective = XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_CONTROL;
  event.buttons_len = 1;
  event.valuators_len = 1;
  return event;
}

/// Moves valuators 0 (x), 2 and 3.
Bytes motion(xcb_input_fp3232_t across, xcb_input_fp3232_t down) {
  Bytes bytes;
  constexpr uint32_t held = 1U << 1U | 1U << 3U;
  constexpr uint32_t valuators = 1U << 0U | 1U << 2U | 1U << 3U;
  bytes.add(pointing()).add(held).add(valuators).add(fixed(110)).add(across).add(down);
  return bytes;
}

TEST(X11Pointer, ReadsPlacesWithTheirFractionsModifiersAndButtons) {
  const Bytes bytes = motion(fixed(0), fixed(0));
  const X11Pointer pointer = pointer_of(bytes.as<xcb_input_button_press_event_t>());
  EXPECT_EQ(pointer.window, 0x400001U);
  EXPECT_EQ(pointer.x, 10.5);
  EXPECT_EQ(pointer.y, 20);
  EXPECT_EQ(pointer.root_x, 110.5);
  EXPECT_EQ(pointer.root_y, 70.25);
  EXPECT_EQ(pointer.time, 4242U);
  EXPECT_EQ(pointer.state, XCB_KEY_BUT_MASK_SHIFT | XCB_KEY_BUT_MASK_CONTROL | XCB_KEY_BUT_MASK_BUTTON_1 |
                               XCB_KEY_BUT_MASK_BUTTON_3);
  EXPECT_FALSE(pointer.emulated);
}

TEST(X11Pointer, KnowsWhatTheServerMadeUp) {
  xcb_input_button_press_event_t press = pointing();
  press.event_type = XCB_INPUT_BUTTON_PRESS;
  press.detail = 5;
  press.flags = XCB_INPUT_POINTER_EVENT_FLAGS_POINTER_EMULATED;
  Bytes bytes;
  bytes.add(press).add(uint32_t{0}).add(uint32_t{0});
  const X11Pointer pointer = pointer_of(bytes.as<xcb_input_button_press_event_t>());
  EXPECT_EQ(pointer.button, 5U);
  EXPECT_TRUE(pointer.emulated);
}

class X11Wheel : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(connection);
    ASSERT_TRUE(devices.usable());
    devices.handleChange(change.as<xcb_input_device_changed_event_t>());
  }
  ScrollTurn turn(xcb_input_fp3232_t across, xcb_input_fp3232_t down) {
    const Bytes bytes = motion(across, down);
    return devices.turnOf(bytes.as<xcb_input_motion_event_t>());
  }
  test_support::XServer server;
  std::unique_ptr<X11Connection> connection = X11Connection::open(server.display().c_str());
  X11PointingDevices devices{*connection, true};
  Bytes change = device_change();
};

TEST_F(X11Wheel, TurnsByFractionsOfANotch) {
  EXPECT_FALSE(turn(fixed(100), fixed(300)));
  const ScrollTurn down = turn(fixed(100), fixed(303, 1U << 31U));  // 3.5 of 15
  EXPECT_DOUBLE_EQ(down.y, -3.5 / 15);
  EXPECT_EQ(down.x, 0);
  const ScrollTurn left = turn(fixed(95), fixed(303, 1U << 31U));
  EXPECT_DOUBLE_EQ(left.x, 0.5);
  EXPECT_EQ(left.y, 0);
}

TEST_F(X11Wheel, ForgetsItsPlaceWhenThePointerLeavesOrAnotherDeviceTakesOver) {
  turn(fixed(0), fixed(0));
  devices.forgetPositions();
  EXPECT_FALSE(turn(fixed(0), fixed(500)));
  devices.handleChange(change.as<xcb_input_device_changed_event_t>());
  EXPECT_FALSE(turn(fixed(0), fixed(900)));
  EXPECT_DOUBLE_EQ(turn(fixed(0), fixed(885)).y, 1);
}

TEST_F(X11Wheel, IsNotUsedWhereItIsNotWanted) {
  const X11PointingDevices none(*connection, false);
  EXPECT_FALSE(none.usable());
}

}  // namespace
}  // namespace cocoa
