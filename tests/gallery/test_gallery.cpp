// SPDX-License-Identifier: MIT
#include <cstring>
#include <filesystem>
#include <fstream>

#include "gallery_test.h"
#include "temporary_folder.h"

namespace ondex::test {
namespace {

using Gallery = GalleryTest;

TEST_P(Gallery, TheButtonReportsAndTheLabelDoesNot) {
  click_at(gallery::centre(gallery::label));
  click_at(gallery::centre(gallery::graph));
  click_at(gallery::centre(gallery::panel));
  click_at(gallery::centre(gallery::button));
  EXPECT_EQ(line("button"), "button");
  EXPECT_EQ(program->output(), "ready\nbutton\n") << "nothing came before";
}

TEST_P(Gallery, AReadoutIsSelectedByAClickAndChangedByADrag) {
  const cocoa::NSPoint middle = gallery::centre(gallery::readout);
  point_at(middle);
  user.press(1);
  EXPECT_EQ(line("selected"), "selected 0");
  point_at({middle.x, middle.y + 40});
  const std::string changed = line("readout");
  user.release(1);
  EXPECT_GT(std::stod(changed.substr(std::strlen("readout "))), 0);
  click_at(gallery::centre(gallery::other_readout));
  EXPECT_EQ(line("selected 1"), "selected 1");
}

TEST_P(Gallery, TheWheelTurnsAReadoutUpAndDown) {
  point_at(gallery::centre(gallery::readout));
  user.click(4);
  const double up = std::stod(line("readout").substr(std::strlen("readout ")));
  EXPECT_GT(up, 0);
  user.click(5);
  EXPECT_EQ(line("readout 0"), "readout 0");
}

TEST_P(Gallery, TheKnobPointsWhereItIsPressedAndWritesToTheSelectedReadout) {
  click_at(gallery::centre(gallery::other_readout));
  EXPECT_EQ(line("selected"), "selected 1");
  // Right of the middle the pointer is far past the middle of the range.
  const cocoa::NSPoint middle = gallery::centre(gallery::knob);
  click_at({middle.x + 40, middle.y});
  const double value = std::stod(line("knob").substr(std::strlen("knob ")));
  EXPECT_GT(value, 0.5);
  EXPECT_LT(value, 1);
  point_at(gallery::centre(gallery::other_readout));
  user.click(4);
  EXPECT_GT(std::stod(line("other").substr(std::strlen("other "))), value) << "from there upwards";
}

TEST_P(Gallery, EndsWhenItsWindowIsClosed) {
  user.send_protocol(window, "WM_DELETE_WINDOW");
  EXPECT_EQ(program->wait_for_exit(), 0);
  program.reset();
}

INSTANTIATE_TEST_SUITE_P(, Gallery, testing::Bool(), manager_name);

TEST(GalleryPicture, IsDrawnWithoutADisplay) {
  const TemporaryFolder folder;
  const std::string file = (folder.path() / "gallery.png").string();
  ChildProcess program(ChildProcess::Setup{{ONDEX_GALLERY, "--screenshot", file, "--scale", "2"},
                                           {{"DISPLAY", std::nullopt}}});
  EXPECT_EQ(program.wait_for_exit(), 0);
  EXPECT_EQ(program.errors(), "");
  // Width and height are the first numbers of a PNG file, highest byte first, from byte 16 on.
  std::ifstream stream(file, std::ios::binary);
  std::string head(24, '\0');
  stream.read(head.data(), 24);
  const auto number = [&head](size_t at) {
    return static_cast<unsigned char>(head[at + 2]) * 256 + static_cast<unsigned char>(head[at + 3]);
  };
  EXPECT_EQ(number(16), 1120);
  EXPECT_EQ(number(20), 760);
}

TEST(GalleryPicture, AnOptionItDoesNotKnowGivesOneLineAndStatusTwo) {
  ChildProcess program(ChildProcess::Setup{{ONDEX_GALLERY, "--set", "0=1"}, {{"DISPLAY", std::nullopt}}});
  EXPECT_EQ(program.wait_for_exit(), 2);
  EXPECT_EQ(program.errors(), "ondex-gallery: it knows --screenshot FILE.png and --scale S only\n");
}

}  // namespace
}  // namespace ondex::test
