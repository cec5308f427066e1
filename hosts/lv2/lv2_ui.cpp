// SPDX-License-Identifier: MIT
// The shared object's way in: what an LV2 host calls, taken to the editor of the handle.

#include <lv2/ui/ui.h>

#include <bit>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include "lv2_ui/lv2_editor.h"

namespace ondex {

using cocoa::NSLog;

namespace {

/// What a handle points to. Each call holds the editor, so that a cleanup from inside of it leaves the editor
/// there until the outermost has returned.
using Held = std::shared_ptr<LV2Editor>;

Held editor_of(LV2UI_Handle handle) {
  return handle ? *static_cast<Held*>(handle) : nullptr;
}

LV2UI_Handle instantiate(const LV2UI_Descriptor*, const char* plugin, const char* bundle_path,
                         LV2UI_Write_Function write, LV2UI_Controller controller, LV2UI_Widget* widget,
                         const LV2_Feature* const* features) {
  const HostLog log(features);
  const cocoa::NSLogHook hook([&log](std::string_view line) { log.write(line); });
  if (!plugin || std::strcmp(plugin, plugin_uri) != 0) {
    NSLog("Ondex: this editor is for <%s> and not for <%s>.", plugin_uri, plugin ? plugin : "");
    return nullptr;
  }
  if (!bundle_path || !write || !widget) {
    NSLog("Ondex: the host gives no %s.", !bundle_path ? "bundle path"
                                          : !write     ? "write function"
                                                       : "widget");
    return nullptr;
  }
  const std::string folder = bundle_path;
  const char* const separator = folder.ends_with('/') ? "" : "/";
  auto editor =
      LV2Editor::open({write, controller, read_features(features), log}, folder + separator + "resources");
  if (!editor)
    return nullptr;
  // The window's number, in a pointer's clothes.
  *widget = std::bit_cast<LV2UI_Widget>(static_cast<uintptr_t>(editor->window()));
  return new Held(std::move(editor));
}

void cleanup(LV2UI_Handle handle) {
  if (!handle)
    return;
  // First of all: to whatever the host still calls from inside, there is no editor any more.
  const Held editor = std::exchange(*static_cast<Held*>(handle), nullptr);
  if (!editor)
    return;
  editor->end();
  delete static_cast<Held*>(handle);
}

void port_event(LV2UI_Handle handle, uint32_t port, uint32_t size, uint32_t format, const void* buffer) {
  if (const Held editor = editor_of(handle))
    editor->portEvent(port, size, format, buffer);
}

int idle(LV2UI_Handle handle) {
  const Held editor = editor_of(handle);
  return editor && editor->idle() ? 0 : 1;
}

int show(LV2UI_Handle handle) {
  const Held editor = editor_of(handle);
  return editor && editor->show() ? 0 : 1;
}

int hide(LV2UI_Handle handle) {
  const Held editor = editor_of(handle);
  return editor && editor->hide() ? 0 : 1;
}

int resize(LV2UI_Feature_Handle handle, int width, int height) {
  const Held editor = editor_of(handle);
  return editor && editor->resize(width, height) ? 0 : 1;
}

const void* extension_data(const char* uri) {
  static const LV2UI_Idle_Interface idle_interface = {idle};
  static const LV2UI_Show_Interface show_interface = {show, hide};
  static const LV2UI_Resize resize_interface = {nullptr, resize};
  if (!uri)
    return nullptr;
  if (std::strcmp(uri, LV2_UI__idleInterface) == 0)
    return &idle_interface;
  if (std::strcmp(uri, LV2_UI__showInterface) == 0)
    return &show_interface;
  if (std::strcmp(uri, LV2_UI__resize) == 0)
    return &resize_interface;
  return nullptr;
}

}  // namespace
}  // namespace ondex

// Its declaration gives it the default visibility; the version script lets nothing else out.
const LV2UI_Descriptor* lv2ui_descriptor(uint32_t index) {
  static const LV2UI_Descriptor descriptor = {ondex::ui_uri, ondex::instantiate, ondex::cleanup,
                                              ondex::port_event, ondex::extension_data};
  return index == 0 ? &descriptor : nullptr;
}
