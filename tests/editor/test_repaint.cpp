// SPDX-License-Identifier: MIT
#include <functional>
#include <numeric>
#include <random>
#include <vector>

#include "appkit/NSWindow.h"
#include "editor_fixture.h"
#include "windows/headless.h"
#include "windows/pixel_geometry.h"

namespace ondex::test {
namespace {

using namespace cocoa;

std::vector<uint32_t> pixels_of(const HeadlessWindow& window) {
  const Frame frame = window.shownFrame();
  return {frame.pixels, frame.pixels + static_cast<ptrdiff_t>(frame.width) * frame.height};
}

long differing(const std::vector<uint32_t>& a, const std::vector<uint32_t>& b) {
  EXPECT_EQ(a.size(), b.size());
  return std::inner_product(a.begin(), a.end(), b.begin(), 0L, std::plus<>(), std::not_equal_to<>());
}

/// The editor in a window of which only parts are drawn again, at some device pixels a point.
class Repaint : public EditorFixture, public testing::WithParamInterface<double> {
 protected:
  Repaint() {
    open();
    window = make<NSWindow>(NSRect{{120, 120}, editor->frame().size}, NSTitledWindowMask);
    window->setWindowSystem(&system);
    window->setContentView(editor.get());
    window->makeKeyAndOrderFront(nullptr);
    pass();
  }
  ~Repaint() override { window = nullptr; }
  void pass() {
    system.dispatch();
    settle();
  }
  HeadlessWindow& shown() { return *system.windows().front(); }
  std::vector<uint32_t> pixels() { return pixels_of(shown()); }
  /// How many pixels of what shows are others when everything is drawn again.
  long left_behind() {
    const auto parts = pixels();
    shown().losePixels();
    pass();
    return differing(parts, pixels());
  }
  long drawn() {
    long count = 0;
    for (const auto& damage : shown().presented()) {
      for (const PixelRect& rect : damage)
        count += long{rect.width} * rect.height;
    }
    shown().clearPresented();
    return count;
  }

  HeadlessWindowSystem system{clock, GetParam()};
  Ref<NSWindow> window;
};
// Besides those of usual displays: some at which shapes end between pixels in every way, and those at which
// the knob is larger than what is kept of small shapes.
INSTANTIATE_TEST_SUITE_P(Scales, Repaint,
                         testing::Values(0.5, 0.6, 0.75, 1.0, 1.02, 1.1, 1.16, 1.37, 1.5, 1.55, 2.0, 2.5, 2.8,
                                         3.37, 4.0));

TEST_P(Repaint, OfPartsComesToTheSameAsOfTheWhole) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> part(0, 1);
  const int steps = GetParam() > 2 ? 3 : 9;
  for (int step = 0; step < steps; ++step) {
    const auto id = static_cast<unsigned>(random() % 7);
    effect.setFromHost(id, part(random) * (id == 2 ? 1 : 20));
    if (step % 3 == 0) {
      const auto& readout = *readouts()[random() % 7];
      // Twice the same one in a row is no double click, which would open the entry.
      clock.advance(10);
      shown().press(readout.convertPoint_toView({20, 13}, nullptr));
      shown().drag_to(readout.convertPoint_toView({20, 13 + CGFloat(part(random)) * 50}, nullptr));
      shown().release();
    }
    pass();
    ASSERT_EQ(left_behind(), 0) << "after step " << step;
  }
}

TEST_P(Repaint, OfTheKnobKeepsToItsPointer) {
  shown().press(readouts()[0]->convertPoint_toView({20, 13}, nullptr));
  shown().release();
  pass();
  drawn();
  for (const double place : {0.1, 0.5, 0.9, 0.2}) {
    editor->_knob->set_current_value(20 * place);
    pass();
    // Below a pixel a point, rectangles that lie near each other are drawn as one.
    const auto area = static_cast<double>(drawn());
    if (GetParam() >= 1) {
      EXPECT_LT(area, 5000 * GetParam() * GetParam());
    }
    EXPECT_EQ(left_behind(), 0) << place;
    drawn();
  }
  // Moved, it is drawn as a whole.
  editor->_knob->setFrameOrigin({340, 100});
  pass();
  EXPECT_EQ(left_behind(), 0);
}

TEST_P(Repaint, OfAnyPartChangesNothing) {
  for (unsigned id = 3; id < 7; ++id)
    effect.setFromHost(id, id % 2 == 1 ? 3.0F : 4.5F);
  pass();
  const auto before = pixels();
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  const auto any = [&random](CGFloat extent) {
    return extent * static_cast<CGFloat>(std::uniform_real_distribution<double>(0, 1)(random));
  };
  const NSSize size = window->frame().size;
  for (int i = 0; i < 12; ++i) {
    const NSPoint corner = {any(size.width), any(size.height)};
    window->setNeedsDisplayInRect({corner, {any(size.width - corner.x) / 3, any(size.height - corner.y)}});
    pass();
    ASSERT_EQ(differing(before, pixels()), 0) << "after " << i << " others";
  }
}

/// A knob as large as the editor's, at every twentieth of a scale.
TEST(KnobRepaint, LeavesNothingOfThePointerBehind) {
  const ManualClock clock;
  const NSAutoreleasePool pool;
  std::vector<double> scales = {1.02, 1.16, 1.37, 2.83, 3.99};
  for (int i = 10; i <= 80; ++i)
    scales.push_back(i / 20.0);
  for (const double scale : scales) {
    HeadlessWindowSystem system{clock, scale};
    const auto window = make<NSWindow>(NSRect{{}, {196, 196}}, NSTitledWindowMask);
    const auto knob = make<KV_Ondex_Big_Knob_View>(NSRect{{}, {196, 196}});
    window->setWindowSystem(&system);
    window->setContentView(knob.get());
    window->makeKeyAndOrderFront(nullptr);
    const auto pass = [&system] {
      system.dispatch();
      CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false);
    };
    pass();
    for (const double value : {0.93, 0.31, 0.617, 0.0, 0.128, 0.777, 1.0, 0.45}) {
      knob->set_current_value(value);
      pass();
    }
    const auto turned = pixels_of(*system.newestWindow());
    system.newestWindow()->losePixels();
    pass();
    EXPECT_EQ(differing(turned, pixels_of(*system.newestWindow())), 0) << scale;
  }
}

}  // namespace
}  // namespace ondex::test
