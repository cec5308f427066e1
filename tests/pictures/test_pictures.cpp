// SPDX-License-Identifier: MIT
#include "contact_sheet.h"
#include "editor_fixture.h"
#include "picture.h"

namespace ondex::test {
namespace {

using namespace cocoa;

class PicturesTest : public EditorFixture {};

TEST_F(PicturesTest, TheContactSheetIsAsCommitted) {
  for (const int scale : {1, 2}) {
    expect_committed_picture(picture_of(*contact_sheet(), scale),
                             "tests/pictures/controls@" + std::to_string(scale) + "x.png");
  }
}

TEST_F(PicturesTest, TheChoicesAreAsCommitted) {
  for (const int scale : {1, 2}) {
    expect_committed_picture(picture_of(*choices_sheet(), scale),
                             "tests/pictures/choices@" + std::to_string(scale) + "x.png");
  }
}

TEST_F(PicturesTest, TheEditorIsAsCommitted) {
  effect.setFromHost(0, 4.5F);
  effect.setFromHost(1, 6.0F);
  effect.setFromHost(2, 0.8F);
  effect.setFromHost(3, 2.0F);
  effect.setFromHost(4, 1.5F);
  effect.setFromHost(5, 3.0F);
  effect.setFromHost(6, 0.75F);
  open();
  for (const int scale : {1, 2}) {
    expect_committed_picture(picture_of(*editor, scale),
                             "tests/pictures/editor@" + std::to_string(scale) + "x.png");
  }
}

TEST_F(PicturesTest, AFractionalScaleShowsTheSameEditor) {
  open();
  const Picture picture = picture_of(*editor, 1.5);
  EXPECT_EQ(picture.width, 1290);
  EXPECT_EQ(picture.height, 528);
  // Opaque everywhere: no seam between the views' edges.
  for (const uint32_t pixel : picture.pixels)
    ASSERT_EQ(pixel >> 24, 0xFFU);
}

}  // namespace
}  // namespace ondex::test
