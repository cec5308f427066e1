#include <cmath>
#include <functional>
#include <numeric>
#include <random>
#include <vector>

#include "appkit/NSWindow.h"
#include "editor_fixture.h"
#include "windows/headless.h"

namespace ondex::test {
namespace {

using namespace cocoa;

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
  std::vector<uint32_t> pixels() {
    const auto width = static_cast<int>(std::ceil(window->frame().size.width * CGFloat(GetParam())));
    const auto height = static_cast<int>(std::ceil(window->frame().size.height * CGFloat(GetParam())));
    std::vector<uint32_t> all;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x)
        all.push_back(shown().shownPixel(x, y));
    }
    return all;
  }
  /// How many pixels of what shows are others when everything is drawn again.
  long left_behind() {
    const auto parts = pixels();
    shown().losePixels();
    pass();
    const auto whole = pixels();
    return std::inner_product(parts.begin(), parts.end(), whole.begin(), 0L, std::plus<>(),
                              std::not_equal_to<>());
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
INSTANTIATE_TEST_SUITE_P(Scales, Repaint, testing::Values(1.0, 1.5, 2.0));

TEST_P(Repaint, OfPartsComesToTheSameAsOfTheWhole) {
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> part(0, 1);
  for (int step = 0; step < 12; ++step) {
    const unsigned id = static_cast<unsigned>(random() % 7);
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
    EXPECT_LT(static_cast<double>(drawn()), 5000 * GetParam() * GetParam());
    EXPECT_EQ(left_behind(), 0) << place;
    drawn();
  }
  // Moved, it is drawn as a whole.
  editor->_knob->setFrameOrigin({340, 100});
  pass();
  EXPECT_EQ(left_behind(), 0);
}

}  // namespace
}  // namespace ondex::test
