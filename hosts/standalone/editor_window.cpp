// SPDX-License-Identifier: MIT
#include "standalone/private/editor_window.h"

#include "appkit/NSApplication.h"
#include "editor/KVOndexView.h"
#include "factory/bundle_classes.h"
#include "hosting/audio_unit_host.h"
#include "standalone/private/resource_folder.h"

namespace ondex {

using namespace cocoa;

namespace {

constexpr NSPoint first_origin = {120, 120};

}  // namespace

EditorWindow::EditorWindow(WindowSystem& system, std::span<const ParameterChange> changes)
    : system_(system), effect_(effect_parameters()) {
  for (const ParameterChange& change : changes)
    effect_.setFromHost(change.id, change.value);
}

EditorWindow::~EditorWindow() {
  // The editor still talks to the effect when it goes.
  window_ = nullptr;
}

bool EditorWindow::open() {
  NSApplicationLoad();
  bundle_ = make<NSBundle>(resource_folder(), bundle_classes());
  const Ref<NSView> editor = make_editor(*bundle_, effect_.audio_unit());
  if (!editor)
    return false;
  window_ =
      make<NSWindow>(NSRect{first_origin, editor->frame().size}, NSTitledWindowMask | NSClosableWindowMask);
  window_->setWindowSystem(&system_);
  window_->setTitle("KV Ondex");
  window_->setContentView(editor.get());
  window_->makeKeyAndOrderFront(nullptr);
  return window_->platformWindow() != nullptr;
}

NSWindow* EditorWindow::open_preferences() {
  auto* editor = dynamic_cast<KVOndexView*>(window_->contentView());
  if (!editor)
    return nullptr;
  editor->do_preferences_panel(nullptr);
  return editor->_preferences_controller->window();
}

NSWindow* EditorWindow::open_colors() {
  NSWindow* preferences = open_preferences();
  if (!preferences)
    return nullptr;
  const auto* editor = dynamic_cast<KVOndexView*>(window_->contentView());
  send(editor->_preferences_controller->_info_color_well, &NSColorWell::activate);
  return preferences->ownedWindows().empty() ? nullptr : preferences->ownedWindows().front();
}

}  // namespace ondex
