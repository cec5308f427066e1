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

X11Window::X11Window(X11WindowSystem& system, const WindowOptions& options, PlatformWindowDelegate& delegate)
    : system_(system),
      connection_(system.connection()),
      delegate_(delegate),
      kind_(options.kind),
      resizable_(options.resizable),
      id_(xcb_generate_id(system.connection().get())),
      place_(system.defaultScale(), system.screenHeight(), options.kind == WindowKind::embedded),
      pointer_(*this),
      focus_(*this, options.kind == WindowKind::embedded) {
  if (kind_ == WindowKind::embedded)
    host_ = static_cast<xcb_window_t>(options.host_window);
  if (options.parent && (kind_ == WindowKind::panel || kind_ == WindowKind::popup))
    parent_ = static_cast<xcb_window_t>(options.parent->nativeHandle());
  place_.put(options.frame);
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
  if (kind_ == WindowKind::embedded) {
    parent = host_;
    const XcbPtr<xcb_get_geometry_reply_t> host(
        xcb_get_geometry_reply(c, xcb_get_geometry(c, host_), nullptr));
    if (!host)
      return false;
    place_.setParentHeight(host->height);
    // Hosts built on Qt make a large window and shrink it round us when they know our size: only the upper
    // left corner stays inside.
    place_.moveTo(0, 0);
    constexpr uint32_t structure = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(c, host_, XCB_CW_EVENT_MASK, &structure);
  }
  const bool translucent =
      kind_ == WindowKind::popup && connection_.translucentVisual() && connection_.hasCompositor();
  const X11Visual& visual = translucent ? connection_.translucentVisual() : connection_.opaqueVisual();

  // A visual other than the parent's needs a border, a colormap and a background of its own.
  xcb_create_window_value_list_t values{};
  values.event_mask = eventMask();
  values.colormap = visual.colormap;
  values.override_redirect = kind_ == WindowKind::popup ? 1 : 0;
  uint32_t mask = XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP | XCB_CW_OVERRIDE_REDIRECT;
  // Without a background the server leaves on the screen what is there until the first frame comes.
  mask |= translucent ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP;
  const auto cookie = xcb_create_window_aux_checked(
      c, visual.depth, id_, parent, static_cast<int16_t>(place_.x()), static_cast<int16_t>(place_.y()),
      static_cast<uint16_t>(place_.width()), static_cast<uint16_t>(place_.height()), 0,
      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.id, mask, &values);
  if (const XcbPtr<xcb_generic_error_t> error(xcb_request_check(c, cookie)); error || connection_.lost())
    return false;
  configured_by_ = cookie.sequence;
  blends_itself_ = kind_ == WindowKind::popup && !translucent;
  // What is blended on its way is not what lies in memory.
  const bool shares_memory = system_.sharesMemory() && !blends_itself_;
  surface_ = std::make_unique<X11Surface>(connection_, id_, visual.depth, shares_memory);
  resizeSurface();
  return true;
}

void X11Window::describe(const std::string& title) {
  leader_ = parent_ == XCB_WINDOW_NONE ? parent_ : connection_.topLevelOf(parent_);
  if (isManageable() && connection_.hasWindowManager()) {
    focus_.setManaged();
    pointer_.setManagerMoves(connection_.managerUnderstands(connection_.atoms().net_wm_moveresize));
  }
  set_identity(connection_, id_, kind_, leader_);
  if (resizable_) {
    set_natural_size(connection_, id_, place_.width(), place_.height(), kind_);
  } else {
    set_fixed_size(connection_, id_, place_.width(), place_.height(), kind_);
  }
  if (kind_ != WindowKind::embedded)
    set_title(connection_, id_, title);
  if (system_.pointingDevices().usable())
    system_.pointingDevices().select(id_);
}

X11Window::~X11Window() {
  system_.remove(*this);
  if (!surface_)
    return;
  releasePointer();
  if (!gone_) {
    focus_.giveBack();
    xcb_destroy_window(connection_.get(), id_);
  }
  if (isPopup())
    system_.popupKeyChanged();
  surface_.reset();
  connection_.flush();
}

void X11Window::resizeSurface() {
  const bool lost = surface_->resize(device_pixels(place_.size().width, place_.scale()),
                                     device_pixels(place_.size().height, place_.scale()));
  must_redraw_ = must_redraw_ || lost;
  surface_->setOrigin(place_.drawn().x, place_.drawn().y);
  const bool has_margin = place_.hasMargin();
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

NSRect X11Window::screenFrame() const {
  screen_x_ = place_.x();
  screen_y_ = place_.y();
  if (!gone_ && (kind_ == WindowKind::embedded || reparented_)) {
    if (const auto origin = connection_.originOf(id_)) {
      screen_x_ = origin->x;
      screen_y_ = origin->y;
    }
  }
  return place_.frameAt(screen_x_, screen_y_, system_.screenHeight());
}

NSRect X11Window::screenBounds() const {
  return {{},
          {static_cast<CGFloat>(system_.screenWidth() / scale()),
           static_cast<CGFloat>(system_.screenHeight() / scale())}};
}

void X11Window::setFrame(NSRect frame) {
  const NSSize size_before = place_.size();
  const PixelRect drawn_before = place_.drawn();
  place_.put(frame);
  if (gone_)
    return;
  if (place_.size() != size_before || place_.drawn() != drawn_before) {
    if (!resizable_)
      set_fixed_size(connection_, id_, place_.width(), place_.height(), kind_);
    resizeSurface();
    if (must_redraw_)
      connection_.wake();
  }
  configure();
  if (blends_itself_) {
    // Another part of the parent shows through now.
    lieOverParent();
    surface_->restoreInWindow({0, 0, place_.width(), place_.height()});
  }
  connection_.flush();
}

void X11Window::configure() {
  xcb_configure_window_value_list_t values{};
  values.x = place_.x();
  values.y = place_.y();
  values.width = static_cast<uint32_t>(place_.width());
  values.height = static_cast<uint32_t>(place_.height());
  constexpr uint16_t mask =
      XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
  configured_by_ = xcb_configure_window_aux(connection_.get(), id_, mask, &values).sequence;
}

void X11Window::setTitle(std::string_view title) {
  if (gone_ || kind_ == WindowKind::embedded)
    return;
  set_title(connection_, id_, title);
  connection_.flush();
}

void X11Window::show() {
  if (gone_)
    return;
  shown_ = true;
  // The place of an embedded window is not told; without it the wrong part would show through.
  if (const X11Window* below = blends_itself_ ? parent() : nullptr)
    below->screenFrame();
  if (kind_ == WindowKind::panel && !mapped_)
    set_above(connection_, id_);
  constexpr uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_.get(), id_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  xcb_map_window(connection_.get(), id_);
  // Nobody can come between an override-redirect window and its being mapped.
  if (kind_ == WindowKind::popup)
    mapped_ = true;
  if (mapped_)
    focus_.windowIsMapped();
  connection_.flush();
}

void X11Window::hide() {
  if (gone_ || !shown_)
    return;
  releasePointer();
  focus_.windowIsHidden();
  shown_ = false;
  // The server's word for it may come only after the window has been shown again.
  mapped_ = false;
  obscured_ = false;
  xcb_unmap_window(connection_.get(), id_);
  if (isManageable())
    announce_withdrawal(connection_, id_);
  connection_.flush();
}

X11Window* X11Window::parent() const {
  return system_.find(parent_);
}

bool X11Window::viewable() const {
  return shown_ && mapped_ && !obscured_ && !iconic_ && host_shows_ && !gone_;
}

void X11Window::present(std::span<const PixelRect> damage) {
  lieOverParent();
  surface_->upload(damage);
  system_.forEachWindow([&](X11Window& window) { window.handleNewsBelow(*this, damage); });
  connection_.flush();
}

void X11Window::makeKey() {
  if (gone_ || isKey())
    return;
  if (!mapped_)
    return focus_.takeOnceMapped();
  focus_.take();
  connection_.flush();
}

void X11Window::giveUpKey() {
  if (gone_)
    return;
  focus_.giveBack();
  connection_.flush();
}

bool X11Window::letManagerMove() {
  if (gone_ || !pointer_.letManagerMove())
    return false;
  connection_.flush();
  return true;
}

void X11Window::grabPointer() {
  if (!gone_ && mapped_ && pointer_.grab())
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

}  // namespace cocoa
