// SPDX-License-Identifier: MIT
#include "lv2_ui/lv2_editor.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "appkit/NSApplication.h"
#include "factory/bundle_classes.h"
#include "foundation/available_memory.h"
#include "hosting/audio_unit_host.h"
#include "windows/pixel_geometry.h"
#include "windows/x11.h"

namespace ondex {

using namespace cocoa;

namespace {

/// The editor collects changes for 0.05 s before it shows them; the margin covers the rounding of its clock.
constexpr double until_shown = 0.051;
/// A host's answer may be as late as this many of its updates.
constexpr double late_updates = 5;
constexpr size_t most_complaints = 64;
/// Bytes: for interface files, fonts and the connection; and for what one call may do besides drawing.
constexpr size_t memory_to_open = 64UL << 20U;
constexpr size_t memory_for_a_call = 8UL << 20U;
constexpr int largest_extent = 16384;
/// Of a window of its own, where no window manager has a better place.
constexpr NSPoint first_origin = {120, 120};

}  // namespace

/// Around everything that is done on the editor's behalf: its loop, its log, its bundle, its windows.
class LV2Editor::Scope {
 public:
  explicit Scope(LV2Editor& editor)
      : loop_(editor.loop_),
        log_([log = &editor.host_.log](std::string_view line) { log->write(line); }),
        bundle_(editor.bundle_.get()),
        windows_(editor.window_system_.get()) {}

 private:
  const CFRunLoopScope loop_;
  const NSLogHook log_;
  const NSBundleScope bundle_;
  const WindowSystemScope windows_;
  const NSAutoreleasePool pool_;
};

std::shared_ptr<LV2Editor> LV2Editor::open(Host host, const std::string& resources) {
  if (!has_memory(memory_to_open)) {
    NSLog("Ondex: there is no memory for an editor.");
    return nullptr;
  }
  std::shared_ptr<LV2Editor> editor(new LV2Editor(std::move(host)));
  return editor->connect() && editor->makeWindow(resources) ? std::move(editor) : nullptr;
}

LV2Editor::LV2Editor(Host host)
    : host_(std::move(host)),
      gestures_([this](unsigned parameter, bool begins) { tellTouch(parameter, begins); }) {
  loop_.setClock(&clock_);
  double memory = EchoFilter::default_memory;
  if (host_.features.update_rate > 0)
    memory = std::max(memory, late_updates / host_.features.update_rate);
  for (const ParameterDescription& parameter : parameter_table)
    echoes_[parameter.number] = EchoFilter(parameter.maximum - parameter.minimum, memory);
}

LV2Editor::~LV2Editor() {
  {
    const Scope scope(*this);
    gestures_.endAll();
    if (window_)
      window_->setDelegate(nullptr);
    window_ = nullptr;
  }
  dispatcher_.reset();
}

void LV2Editor::end() {
  const Scope scope(*this);
  gestures_.endAll();
  ended_ = closed_ = gone_ = true;
  host_.features.resize.reset();
  host_.features.touch.reset();
  host_.log.forgetHost();
  window_->setDelegate(nullptr);
  window_->close();
}

bool LV2Editor::connect() {
  const Scope scope(*this);
  window_system_ = make_x11_window_system(nullptr, host_.features.scale);
  if (!window_system_)
    return false;
  dispatcher_ = loop_.addPoller([this] { return window_system_->dispatch(); });
  return true;
}

bool LV2Editor::makeWindow(const std::string& resources) {
  const Scope scope(*this);
  NSApplicationLoad();
  effect_ = std::make_unique<EffectInstance>(effect_parameters());
  effect_->onWrite([this](AudioUnitParameterID id, Float32 value) { write(id, value); });
  bundle_ = make<NSBundle>(resources, bundle_classes());
  const HostFeatures& features = host_.features;
  const Ref<NSView> editor = make_editor(*bundle_, effect_->audio_unit());
  if (!editor)
    return false;
  window_ = make<GestureWindow>(NSRect{features.parent == 0 ? first_origin : NSPoint{}, editor->frame().size},
                                [this] { gestures_.released(); });
  window_->setWindowSystem(window_system_.get());
  window_->setHostWindow(features.parent);
  window_->setTitle(features.title.empty() ? "Ondex" : features.title);
  window_->setContentView(editor.get());
  window_->setContentScalesToFit();
  window_->setDelegate(this);
  if (!window_->realize())
    return false;
  window_number_ = window_->platformWindow()->nativeHandle();
  if (features.parent != 0)
    window_->orderFront(nullptr);
  // Asks the display, and so waits until it has seen to everything: a host looks at the window at once.
  window_->platformWindow()->screenFrame();
  tellSize();
  return true;
}

void LV2Editor::tellSize() const {
  const auto resize = host_.features.resize;
  if (!resize)
    return;
  const PlatformWindow& window = *window_->platformWindow();
  const NSSize size = window.frame().size;
  resize->ui_resize(resize->handle, device_pixels(size.width, window.scale()),
                    device_pixels(size.height, window.scale()));
}

bool LV2Editor::windowShouldClose(NSWindow*) {
  user_closes_ = true;
  return true;
}

void LV2Editor::windowWillClose(NSWindow*) {
  closed_ = true;
  gone_ = !std::exchange(user_closes_, false);
  gestures_.endAll();
}

bool LV2Editor::hasMemory() {
  const bool lacked_memory = std::exchange(lacks_memory_, !has_memory(memory_for_a_call));
  if (lacks_memory_ && !lacked_memory)
    NSLog("Ondex: there is no memory left; the editor waits for some.");
  return !lacks_memory_;
}

bool LV2Editor::idle() {
  // The host may well wait for its user inside one of our calls and go on with its idle calls there.
  if (in_pass_)
    return !closed_;
  in_pass_ = true;
  {
    const Scope scope(*this);
    if (hasMemory())
      runOnce();
  }
  in_pass_ = false;
  return !closed_;
}

void LV2Editor::runOnce() {
  // What the host has said by now is to be in the first picture, so it need not be collected any longer.
  if (std::exchange(first_idle_, false))
    clock_.skip(until_shown);
  gestures_.tick(clock_.now());
  takeSettled();
  CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
}

bool LV2Editor::show() {
  const Scope scope(*this);
  if (gone_ || !hasMemory())
    return false;
  closed_ = false;
  window_->orderFront(nullptr);
  return true;
}

bool LV2Editor::hide() {
  const Scope scope(*this);
  gestures_.endAll();
  window_->orderOut(nullptr);
  return true;
}

bool LV2Editor::resize(int width, int height) {
  const Scope scope(*this);
  if (gone_ || !hasMemory())
    return false;
  if (width <= 0 || height <= 0 || width > largest_extent || height > largest_extent) {
    NSLog("Ondex: the editor cannot be %d x %d pixels large.", width, height);
    return false;
  }
  PlatformWindow& window = *window_->platformWindow();
  const NSRect before = window.frame();
  NSRect frame = before;
  frame.size = {static_cast<CGFloat>(width / window.scale()), static_cast<CGFloat>(height / window.scale())};
  // The upper edge stays where it is.
  frame.origin.y += before.size.height - frame.size.height;
  window.setFrame(frame);
  return true;
}

// The editor's side

void LV2Editor::write(unsigned parameter, float value) {
  const double now = clock_.now();
  if (ended_)
    return;
  gestures_.willWrite(parameter, window_ ? window_->gestureOfNow() : GestureKind::entry, now);
  // The host may have hidden the editor from inside the call, which ends all gestures: the write gets its
  // own.
  if (!ended_ && !gestures_.isOpen(parameter))
    gestures_.willWrite(parameter, GestureKind::entry, now);
  // Or it may have ended the editor, or will have no gesture at all.
  if (ended_ || !gestures_.isOpen(parameter))
    return;
  // Before the host hears of it, as it may answer from inside the call.
  echoes_[parameter].wrote(value, now);
  host_.write(host_.controller, host_.features.ports[parameter], sizeof value, 0, &value);
  gestures_.didWrite(parameter);
}

void LV2Editor::tellTouch(unsigned parameter, bool begins) {
  // A copy: it is taken away when the host ends the editor from inside the call.
  if (const auto touch = host_.features.touch)
    touch->touch(touch->handle, host_.features.ports[parameter], begins);
}

// The host's side

std::optional<unsigned> LV2Editor::parameterOfPort(uint32_t port) const {
  const ParameterPorts& ports = host_.features.ports;
  const auto* const found = std::find(ports.begin(), ports.end(), port);
  if (found == ports.end())
    return std::nullopt;
  return static_cast<unsigned>(found - ports.begin());
}

bool LV2Editor::isNew(Complaint complaint, uint32_t port) {
  return complaints_.size() < most_complaints && complaints_.insert({complaint, port}).second;
}

std::optional<float> LV2Editor::checkedValue(uint32_t port, uint32_t size, uint32_t format,
                                             const void* buffer) {
  if (format != 0 && format != host_.features.float_protocol) {
    if (isNew(Complaint::format, port))
      NSLog("Ondex: the host's event for port %u is of the unknown format %u.", port, format);
    return std::nullopt;
  }
  float value = 0;
  if (size != sizeof value || !buffer) {
    if (isNew(Complaint::size, port))
      NSLog("Ondex: the host's event for port %u has %u bytes instead of a float.", port, buffer ? size : 0);
    return std::nullopt;
  }
  std::memcpy(&value, buffer, sizeof value);
  if (!std::isfinite(value)) {
    if (isNew(Complaint::not_a_number, port))
      NSLog("Ondex: the host's value for port %u is not a finite number.", port);
    return std::nullopt;
  }
  return value;
}

void LV2Editor::portEvent(uint32_t port, uint32_t size, uint32_t format, const void* buffer) {
  const Scope scope(*this);
  const auto parameter = parameterOfPort(port);
  if (!parameter) {
    if (isNew(Complaint::port, port))
      NSLog("Ondex: the host's event is for port %u, which is none of the parameters'.", port);
    return;
  }
  const auto told = checkedValue(port, size, format, buffer);
  if (!told)
    return;
  const ParameterDescription& row = parameter_table[*parameter];
  const float value = std::clamp(*told, static_cast<float>(row.minimum), static_cast<float>(row.maximum));
  if (value != *told && isNew(Complaint::out_of_range, port)) {
    NSLog("Ondex: the host's value %g for port %u is taken as %g.", static_cast<double>(*told), port,
          static_cast<double>(value));
  }
  if (const auto news = echoes_[*parameter].heard(value, clock_.now(), gestures_.isOpen(*parameter)))
    effect_->setFromHost(*parameter, *news);
}

void LV2Editor::takeSettled() {
  for (unsigned parameter = 0; parameter < parameter_count; ++parameter) {
    if (const auto news = echoes_[parameter].settled(clock_.now(), gestures_.isOpen(parameter)))
      effect_->setFromHost(parameter, *news);
  }
}

}  // namespace ondex
