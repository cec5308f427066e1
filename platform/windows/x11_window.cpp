// SPDX-License-Identifier: MIT
#include "windows/private/x11_window.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "foundation/NSLog.h"
#include "windows/pixel_geometry.h"
#include "windows/private/x11_connection.h"
#include "windows/private/x11_properties.h"
#include "windows/private/x11_system.h"

namespace cocoa {

std::unique_ptr<X11Window> X11Window::make(X11WindowSystem& system, const WindowOptions& options,
                                           PlatformWindowDelegate& delegate) {
  std::unique_ptr<X11Window> window(new X11Window(system, options, delegate));
  if (!window->create()) {
    NSLog("The X server refused the window \"%s\".", options.title.c_str());
    return nullptr;
  }
  window->describe(options.title);
  system.add(*window);
  system.connection().flush();
  return window;
}

namespace {
xcb_window_t parent_of(const WindowOptions& options) {
  const bool has_one =
      options.parent && (options.kind == WindowKind::panel || options.kind == WindowKind::popup);
  return has_one ? static_cast<xcb_window_t>(options.parent->nativeHandle()) : xcb_window_t{XCB_WINDOW_NONE};
}
}  // namespace

X11Window::X11Window(X11WindowSystem& system, const WindowOptions& options, PlatformWindowDelegate& delegate)
    : system_(system),
      connection_(system.connection()),
      delegate_(delegate),
      kind_(options.kind),
      resizable_(options.resizable),
      id_(xcb_generate_id(system.connection().get())),
      parent_probe_(*this, parent_of(options)),
      placement_(*this, system.defaultScale(), system.screenHeight(), isEmbedded()),
      visibility_(*this),
      pointer_(*this),
      focus_(*this, isEmbedded()) {
  if (isEmbedded())
    host_ = static_cast<xcb_window_t>(options.host_window);
  placement_.place().put(options.frame);
}

uint32_t X11Window::eventMask() const {
  uint32_t mask = XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW | XCB_EVENT_MASK_EXPOSURE |
                  XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_FOCUS_CHANGE |
                  XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_VISIBILITY_CHANGE;
  if (focus_.selectsKeys())
    mask |= XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE;
  if (!system_.pointingDevices().usable())
    mask |= XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION;
  return mask;
}

bool X11Window::create() {
  xcb_connection_t* c = connection_.get();
  xcb_window_t parent = connection_.root();
  if (isEmbedded()) {
    parent = host_;
    const XcbPtr<xcb_get_geometry_reply_t> host(
        xcb_get_geometry_reply(c, xcb_get_geometry(c, host_), nullptr));
    if (!host)
      return false;
    placement_.place().setParentHeight(host->height);
    // Hosts built on Qt make a large window and shrink it round us when they know our size: only the upper
    // left corner stays inside.
    placement_.place().moveTo(0, 0);
    constexpr uint32_t structure = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, host_, XCB_CW_EVENT_MASK, &structure);
  }
  const bool translucent = isPopup() && connection_.translucentVisual() && connection_.hasCompositor();
  const X11Visual& visual = translucent ? connection_.translucentVisual() : connection_.opaqueVisual();

  // A visual other than the parent's needs a border, a colormap and a background of its own.
  xcb_create_window_value_list_t values{};
  values.event_mask = eventMask();
  values.colormap = visual.colormap;
  values.override_redirect = isPopup() ? 1 : 0;
  uint32_t mask = XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP | XCB_CW_OVERRIDE_REDIRECT;
  // Without a background the server leaves on the screen what is there until the first frame comes.
  mask |= translucent ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP;
  const auto cookie = xcb_create_window_aux_checked(
      c, visual.depth, id_, parent, static_cast<int16_t>(place().x()), static_cast<int16_t>(place().y()),
      static_cast<uint16_t>(place().width()), static_cast<uint16_t>(place().height()), 0,
      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.id, mask, &values);
  if (const XcbPtr<xcb_generic_error_t> error(xcb_request_check(c, cookie)); error || connection_.lost())
    return false;
  placement_.setRequestedBy(cookie.sequence);
  blends_itself_ = isPopup() && !translucent;
  // What is blended on its way is not what lies in memory.
  const bool shares_memory = system_.sharesMemory() && !blends_itself_;
  surface_ = std::make_unique<X11Surface>(connection_, id_, visual.depth, shares_memory);
  resizeSurface();
  life_ = Life::alive;
  return true;
}

void X11Window::describe(const std::string& title) {
  parent_probe_.findLeader();
  if (isManageable() && connection_.hasWindowManager()) {
    focus_.setManaged();
    pointer_.setManagerMoves(connection_.managerUnderstands(connection_.atoms().net_wm_moveresize));
  }
  set_identity(connection_, id_, kind_, parent_probe_.leader());
  if (resizable_) {
    set_natural_size(connection_, id_, place().width(), place().height(), kind_);
  } else {
    set_fixed_size(connection_, id_, place().width(), place().height(), kind_);
  }
  if (kind_ != WindowKind::embedded)
    set_title(connection_, id_, title);
  if (system_.pointingDevices().usable())
    system_.pointingDevices().select(id_);
}

X11Window::~X11Window() {
  system_.remove(*this);
  if (life_ == Life::unborn)
    return;
  releasePointer();
  if (life_ == Life::alive) {
    focus_.giveBack();
    xcb_destroy_window(connection_.get(), id_);
  }
  if (isPopup())
    system_.popupKeyChanged();
  surface_.reset();
  connection_.flush();
}

void X11Window::resizeSurface() {
  const bool lost = surface_->resize(device_pixels(place().size().width, place().scale()),
                                     device_pixels(place().size().height, place().scale()));
  must_redraw_ = must_redraw_ || lost;
  surface_->setOrigin(place().drawn().x, place().drawn().y);
  const bool has_margin = place().hasMargin();
  if (std::exchange(has_margin_, has_margin) == has_margin)
    return;
  // What nobody draws is the server's to fill.
  constexpr std::array<uint32_t, 1> no_pixmap{XCB_BACK_PIXMAP_NONE};
  constexpr std::array<uint32_t, 1> grey{0xff333333};
  xcb_change_window_attributes(connection_.get(), id_, has_margin ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP,
                               has_margin ? grey.data() : no_pixmap.data());
  if (has_margin)
    xcb_clear_area(connection_.get(), 0, id_, 0, 0, 0, 0);
}

NSRect X11Window::screenBounds() const {
  return {{},
          {static_cast<CGFloat>(system_.screenWidth() / scale()),
           static_cast<CGFloat>(system_.screenHeight() / scale())}};
}

void X11Window::setFrame(NSRect frame) {
  const NSSize size_before = place().size();
  const PixelRect drawn_before = place().drawn();
  placement_.place().put(frame);
  if (isGone())
    return;
  if (place().size() != size_before || place().drawn() != drawn_before) {
    if (!resizable_)
      set_fixed_size(connection_, id_, place().width(), place().height(), kind_);
    resizeSurface();
    if (must_redraw_)
      connection_.wake();
  }
  placement_.request();
  if (blends_itself_) {
    // Another part of the parent shows through now.
    lieOverParent();
    surface_->restoreInWindow({0, 0, place().width(), place().height()});
  }
  connection_.flush();
}

void X11Window::setTitle(std::string_view title) {
  if (isGone() || isEmbedded())
    return;
  set_title(connection_, id_, title);
  connection_.flush();
}

void X11Window::show() {
  if (isGone())
    return;
  // The place of an embedded window is not told; without it the wrong part would show through.
  if (const X11Window* below = blends_itself_ ? parent() : nullptr)
    below->screenFrame();
  if (kind_ == WindowKind::panel && !visibility_.isMapped())
    set_above(connection_, id_);
  constexpr uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_.get(), id_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  xcb_map_window(connection_.get(), id_);
  // An override-redirect window needs nobody's leave.
  visibility_.show(isPopup());
  if (visibility_.isMapped())
    focus_.windowIsMapped();
  connection_.flush();
}

void X11Window::hide() {
  if (isGone() || !visibility_.isShown())
    return;
  releasePointer();
  focus_.windowIsHidden();
  visibility_.hide();
  xcb_unmap_window(connection_.get(), id_);
  if (isManageable())
    announce_withdrawal(connection_, id_);
  connection_.flush();
}

void X11Window::present(std::span<const PixelRect> damage) {
  lieOverParent();
  surface_->upload(damage);
  system_.forEachWindow([&](X11Window& window) { window.handleNewsBelow(*this, damage); });
  connection_.flush();
}

void X11Window::makeKey() {
  if (isGone() || isKey())
    return;
  if (!visibility_.isMapped())
    return focus_.takeOnceMapped();
  focus_.take();
  connection_.flush();
}

void X11Window::giveUpKey() {
  if (isGone())
    return;
  focus_.giveBack();
  connection_.flush();
}

bool X11Window::letManagerMove() {
  if (isGone() || !pointer_.letManagerMove())
    return false;
  connection_.flush();
  return true;
}

void X11Window::grabPointer() {
  if (!isGone() && visibility_.isMapped() && pointer_.grab())
    connection_.flush();
}

void X11Window::releasePointer() {
  if (pointer_.release())
    connection_.flush();
}

void X11Window::selectEvents() {
  const uint32_t mask = eventMask();
  xcb_change_window_attributes(connection_.get(), id_, XCB_CW_EVENT_MASK, &mask);
}

// With the parent's pixels showing through

void X11Window::lieOverParent() {
  if (!blends_itself_)
    return;
  const X11Window* below = parent();
  if (!below) {
    surface_->setBackdrop(nullptr, 0, 0);
    return;
  }
  const X11Connection::Place origin = below->placement_.knownOrigin();
  const PixelRect& drawn_below = below->place().drawn();
  surface_->setBackdrop(below->surface_.get(), place().x() + place().drawn().x - origin.x - drawn_below.x,
                        place().y() + place().drawn().y - origin.y - drawn_below.y);
}

void X11Window::handleNewsBelow(const X11Window& changed, std::span<const PixelRect> damage) {
  if (!blends_itself_ || !parent_probe_.isParent(changed.id_))
    return;
  lieOverParent();
  for (const PixelRect& part : damage)
    surface_->restoreAbove(clipped(part, changed.place().drawn().width, changed.place().drawn().height));
}

// Events of the server

void X11Window::tell(const std::vector<WindowEvent>& events) {
  X11WindowSystem& system = system_;
  const xcb_window_t id = id_;
  for (const WindowEvent& event : events) {
    if (X11Window* window = system.find(id))
      window->delegate_.windowReceived(event);
  }
}

void X11Window::handleButton(const X11Pointer& pointer, bool down) {
  if (const auto event = pointer_.button(pointer, down))
    delegate_.windowReceived(*event);
}

void X11Window::handleMotion(const X11Pointer& pointer) {
  tell(pointer_.motion(pointer));
}

void X11Window::handleTurn(const X11Pointer& pointer, ScrollTurn turn) {
  delegate_.windowReceived(pointer_.scroll(pointer, turn));
}

void X11Window::handleCrossing(const X11Pointer& pointer, bool in) {
  if (const auto event = pointer_.crossing(pointer, in))
    delegate_.windowReceived(*event);
}

void X11Window::handleKey(const xcb_key_press_event_t& event, bool down) {
  if (down && isPopup() && !parent_probe_.isSeen())
    return parent_probe_.tellHidden();
  X11Keyboard& keyboard = system_.keyboard();
  X11Keyboard::Key key =
      down ? keyboard.press(event.detail, event.state) : keyboard.release(event.detail, event.state);
  WindowEvent told;
  told.type = down ? WindowEventType::key_down : WindowEventType::key_up;
  told.location = place().locationOf(event.event_x, event.event_y);
  told.modifiers = modifiers_of_state(event.state);
  told.timestamp = system_.secondsOf(event.time);
  told.keysym = key.keysym;
  told.characters = std::move(key.characters);
  told.is_repeat = key.is_repeat;
  delegate_.windowReceived(told);
}

void X11Window::handleExpose(const xcb_expose_event_t& event) {
  lieOverParent();
  surface_->restoreInWindow({event.x, event.y, event.width, event.height});
}

void X11Window::handleConfigure(const xcb_configure_notify_event_t& event, uint32_t sequence) {
  if (placement_.isOutdated(sequence))
    return;
  if (event.width != place().width() || event.height != place().height()) {
    placement_.place().setPixelSize(event.width, event.height);
    resizeSurface();
  }
  X11WindowSystem& system = system_;
  const xcb_window_t id = id_;
  placement_.handlePosition(event);
  if (X11Window* window = system.find(id))
    window->tellDeferred();
}

void X11Window::parentHasHeight(int height) {
  if (placement_.place().setParentHeight(height))
    delegate_.windowMoved();
}

void X11Window::handleMap() {
  visibility_.handleMap();
  focus_.windowIsMapped();
}

void X11Window::handleUnmap() {
  visibility_.handleUnmap();
  tell(pointer_.releaseAll());
}

void X11Window::handleMessage(const xcb_client_message_event_t& event) {
  const X11Atoms& atoms = connection_.atoms();
  if (event.type != atoms.wm_protocols || event.format != 32)
    return;
  if (event.data.data32[0] == atoms.net_wm_ping) {
    answer_ping(connection_, event);
  } else if (event.data.data32[0] == atoms.wm_delete_window) {
    delegate_.windowShouldClose();
  }
}

void X11Window::handleGone() {
  life_ = Life::gone;
  releasePointer();
  surface_->abandon();
  X11WindowSystem& system = system_;
  const xcb_window_t id = id_;
  focus_.handleGone();
  if (X11Window* window = system.find(id)) {
    system.remove(*window);
    window->delegate_.windowGone();
  }
}

void X11Window::tellDeferred() {
  if (std::exchange(must_redraw_, false))
    delegate_.windowMustRedraw();
}

}  // namespace cocoa
