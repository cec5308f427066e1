// SPDX-License-Identifier: MIT
#include "appkit/NSGraphicsContext.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include "appkit/NSWindow.h"
#include "editor_fixture.h"
#include "picture.h"
#include "windows/headless.h"

namespace ondex::test {
namespace {

using namespace cocoa;

/// A part of what a window and its child windows show.
class PartOfWindow : public NSView {
 public:
  PartOfWindow(NSWindow& window, NSRect part) : NSView({{0, 0}, part.size}), window_(window), part_(part) {}
  void drawRect(NSRect) override {
    CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
    CGContextTranslateCTM(context, -part_.origin.x, -part_.origin.y);
    window_.drawWithChildren(context);
  }

 private:
  NSWindow& window_;
  NSRect part_;
};

/// The entry panel over its readout: as it opens, with a number typed, with a text refused, with one too
/// long.
class EntryPictures : public EditorFixture {
 protected:
  EntryPictures() {
    open();
    effect.setFromHost(3, 2.125F);
    settle();
    window = make<NSWindow>(NSRect{{120, 120}, editor->frame().size}, NSTitledWindowMask);
    window->setWindowSystem(&system);
    window->setContentView(editor.get());
    window->makeKeyAndOrderFront(nullptr);
    pass();
    const NSPoint middle =
        editor->_tremolo_left_fm_mod_frequency_parameter->convertPoint_toView({70, 13}, nullptr);
    for (int click = 0; click < 2; ++click) {
      system.windows().front()->press(middle);
      system.windows().front()->release();
    }
    pass();
  }
  ~EntryPictures() override { window = nullptr; }
  void pass() {
    const NSAutoreleasePool cycle;
    system.dispatch();
    turn();
  }
  void type(std::string_view text) {
    system.newestWindow()->type(text);
    pass();
  }
  void press(uint32_t keysym, uint32_t modifiers = 0) {
    system.newestWindow()->key_down(keysym, "", modifiers);
    pass();
  }
  /// Below those taken before.
  void take() {
    for (const int scale : {1, 2}) {
      Picture& taken = pictures[static_cast<size_t>(scale - 1)];
      const Picture next = picture_of(*make<PartOfWindow>(*window, NSMakeRect(20, 12, 330, 90)), scale);
      taken.width = next.width;
      taken.height += next.height;
      taken.pixels.insert(taken.pixels.end(), next.pixels.begin(), next.pixels.end());
    }
  }

  HeadlessWindowSystem system{clock};
  Ref<NSWindow> window;
  Picture pictures[2];
};

TEST_F(EntryPictures, ThePanelIsAsCommitted) {
  constexpr uint32_t enter = XKB_KEY_Return;
  take();
  type("12,75");
  take();
  type(" loud");
  press(enter);
  take();
  press('a', modifier_control);
  type("3.14159265358979323846");
  take();
  expect_committed_picture(pictures[0], "tests/pictures/entry@1x.png");
  expect_committed_picture(pictures[1], "tests/pictures/entry@2x.png");
}

}  // namespace
}  // namespace ondex::test
