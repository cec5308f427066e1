// SPDX-License-Identifier: MIT
#pragma once

#include <xkbcommon/xkbcommon-keysyms.h>

#include <filesystem>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "appkit/NSWindow.h"
#include "editor_fixture.h"
#include "windows/headless.h"

namespace ondex::test {

/// The editor of a bundle whose interface files a test may spoil.
class InterfaceFileTest : public EditorFixture {
 protected:
  /// One of the bundle's interface files while it is changed.
  class File {
   public:
    File(const TemporaryFolder& folder, const std::string& name) : path_(folder.path() / (name + ".xib")) {
      std::filesystem::copy_file(source_path("resources/" + name + ".xib"), path_);
      EXPECT_TRUE(document.load_file(path_.c_str()));
    }
    void save() const { EXPECT_TRUE(document.save_file(path_.c_str())); }
    pugi::xml_node objects() const { return document.document_element().child("objects"); }
    pugi::xml_node element(const std::string& id) const { return with("id", id); }
    pugi::xml_node outlet(const std::string& name) const { return with("property", name); }
    void remove(pugi::xml_node node) { EXPECT_TRUE(node.parent().remove_child(node)); }
    void move(const std::string& id, pugi::xml_node parent) {
      EXPECT_TRUE(parent.append_move(element(id))) << id;
    }
    /// The element's subviews, made if there are none.
    static pugi::xml_node subviews_of(pugi::xml_node view) {
      const pugi::xml_node found = view.child("subviews");
      return found ? found : view.append_child("subviews");
    }
    static void set_size(pugi::xml_node view, const char* width, const char* height) {
      const pugi::xml_node frame = view.find_child_by_attribute("key", "frame");
      EXPECT_TRUE(frame.attribute("width").set_value(width));
      EXPECT_TRUE(frame.attribute("height").set_value(height));
    }

    pugi::xml_document document;

   private:
    pugi::xml_node with(const char* attribute, const std::string& value) const {
      return document.find_node(
          [&](pugi::xml_node node) { return node.attribute(attribute).value() == value; });
    }
    std::filesystem::path path_;
  };

  InterfaceFileTest() {
    std::filesystem::copy_file(source_path("resources/Info.plist"), folder.path() / "Info.plist");
  }
  ~InterfaceFileTest() override { window = nullptr; }

  /// Opens the editor of the files as they are now.
  void open_changed() {
    view_file.save();
    preferences_file.save();
    open();
  }
  void show() {
    window = cocoa::make<cocoa::NSWindow>(cocoa::NSRect{{100, 100}, editor->frame().size},
                                          cocoa::NSTitledWindowMask);
    window->setWindowSystem(&system);
    window->setContentView(editor.get());
    window->makeKeyAndOrderFront(nullptr);
    serve();
  }
  /// What a host and a user have done is dealt with and shown.
  void serve() {
    const cocoa::NSAutoreleasePool turn_pool;
    system.dispatch();
    settle();
    system.dispatch();
    turn();
  }
  /// Does to every part of the editor what a host and a user can do.
  void use() {
    show();
    for (unsigned id = 0; id < 7; ++id)
      effect.setFromHost(id, 0.75F);
    serve();
    std::vector<cocoa::NSPoint> places;
    add_places(*editor, places);
    for (const cocoa::NSPoint place : places)
      use(place);
  }
  /// Lets go of the window and the editor; whether the editor has gone.
  bool close() {
    const cocoa::WeakRef<cocoa::NSView> weak(editor.get());
    window = nullptr;
    editor = nullptr;
    return !weak;
  }

  TemporaryFolder folder;
  File view_file{folder, "KVOndexView"};
  File preferences_file{folder, "KV_Ondex_Preferences"};
  /// Made last, it is the one that the classes belong to.
  cocoa::Ref<cocoa::NSBundle> own_bundle =
      cocoa::make<cocoa::NSBundle>(folder.path().string(), bundle_classes());
  cocoa::HeadlessWindowSystem system{clock};
  cocoa::Ref<cocoa::NSWindow> window;

 private:
  /// The middles of all views, in the window.
  static void add_places(const cocoa::NSView& view, std::vector<cocoa::NSPoint>& places) {
    const cocoa::NSPoint corner = {NSMaxX(view.bounds()) / 2, NSMaxY(view.bounds()) / 2};
    places.push_back(view.convertPoint_toView(corner, nullptr));
    for (const cocoa::Ref<cocoa::NSView>& subview : view.subviews())
      add_places(*subview, places);
  }
  void use(cocoa::NSPoint place) {
    constexpr uint32_t return_key = XKB_KEY_Return;
    cocoa::HeadlessWindow& shown = *system.windows().front();
    clock.advance(10);
    shown.press(place);
    shown.drag_to({place.x + 3, place.y + 5});
    shown.release();
    shown.scroll(0, 1);
    serve();
    clock.advance(10);
    for (int click = 0; click < 2; ++click) {
      shown.press(place);
      shown.release();
    }
    serve();
    if (cocoa::HeadlessWindow* entry = system.keyWindow()) {
      entry->type("0,5");
      entry->key_down(return_key, "");
    }
    serve();
  }
};

}  // namespace ondex::test
