// SPDX-License-Identifier: MIT
// Hosts that say what makes no sense.

#include <limits>

#include "host_fixture.h"

namespace ondex::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class BadInput : public HostTest {
 protected:
  /// Opens with options of the test's own.
  bool openWith(std::vector<LV2_Options_Option> options) {
    parent = makeParent();
    return host.open({.parent = parent, .more_options = std::move(options)});
  }
  LV2_Options_Option option(const char* key, const char* type, uint32_t size, const void* value) {
    return {LV2_OPTIONS_INSTANCE, 0, host.number(key), size, host.number(type), value};
  }
  /// Whether the event leaves what is shown as it is, and says why.
  void expectRefused(uint32_t port, uint32_t size, uint32_t format, const void* data, const char* reason) {
    const auto before = picture(host.window());
    host.event(port, size, format, data);
    host.event(port, size, format, data);
    host.idleFor(0.12);
    EXPECT_TRUE(picture(host.window()) == before);
    EXPECT_THAT(host.log(), SizeIs(++lines)) << "one line, once";
    EXPECT_TRUE(host.logHas(reason));
    EXPECT_THAT(host.told(), IsEmpty());
  }
  size_t lines = 0;
};

TEST_F(BadInput, AnotherPlugInIsRefused) {
  host.plugin_uri = "urn:kelvane:other";
  EXPECT_FALSE(host.open({}));
  EXPECT_TRUE(host.logHas("urn:kelvane:other"));
}

TEST_F(BadInput, AMissingWriteFunctionIsRefused) {
  host.has_write_function = false;
  EXPECT_FALSE(host.open({}));
  EXPECT_TRUE(host.logHas("write function"));
}

TEST_F(BadInput, ABundleWithoutInterfaceFilesIsRefused) {
  host.bundle_path = "/nowhere/";
  EXPECT_FALSE(host.open({}));
  EXPECT_THAT(host.log(), testing::Not(IsEmpty()));
}

TEST_F(BadInput, AParentThatIsNoWindowIsRefused) {
  EXPECT_FALSE(host.open({.parent = 0x1234567}));
  EXPECT_TRUE(host.logHas("refused the window"));
}

TEST_F(BadInput, NullPointersHarmNobody) {
  const LV2UI_Descriptor& descriptor = *object.descriptor();
  LV2UI_Widget widget = nullptr;
  EXPECT_EQ(descriptor.instantiate(&descriptor, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr),
            nullptr);
  EXPECT_EQ(descriptor.instantiate(&descriptor, host.plugin_uri.c_str(), nullptr, nullptr, nullptr, &widget,
                                   nullptr),
            nullptr);
  EXPECT_EQ(descriptor.extension_data(nullptr), nullptr);
  EXPECT_EQ(descriptor.extension_data("urn:unknown"), nullptr);
  descriptor.port_event(nullptr, 4, 4, 0, &widget);
  descriptor.cleanup(nullptr);
}

TEST_F(BadInput, EmptyFeaturesAreNotUsed) {
  parent = makeParent();
  ASSERT_TRUE(host.open({.parent = parent,
                         .touch = false,
                         .resize = false,
                         .port_map = false,
                         .more_features = {{LV2_UI__touch, nullptr},
                                           {LV2_UI__resize, nullptr},
                                           {LV2_UI__portMap, nullptr},
                                           {nullptr, nullptr},
                                           {"urn:unknown", this}}}));
  EXPECT_TRUE(host.logHas("ui#touch> is empty"));
  EXPECT_TRUE(host.logHas("ui#resize> is empty"));
  EXPECT_TRUE(host.logHas("ui#portMap> is empty"));
  EXPECT_THAT(host.log(), SizeIs(3));
  host.idleFor(0.1);
  drag(on_depth, 0, -40);
  EXPECT_NEAR(host.value(depth_port), 0.7F, 1e-5F);
}

TEST_F(BadInput, OptionsAreNothingWithoutNumbersForTheirNames) {
  parent = user.make_window(0, 0, editor_width, editor_height);
  ASSERT_TRUE(host.open({.parent = parent, .map = false, .log = false, .scale = 2.0F}));
  EXPECT_EQ(user.geometry(host.window()).width, editor_width);
}

TEST_F(BadInput, AScaleFactorOfAnotherTypeIsNotUsed) {
  const double scale = 2;
  ASSERT_TRUE(openWith({option(LV2_UI__scaleFactor, LV2_ATOM__Double, sizeof scale, &scale)}));
  EXPECT_EQ(user.geometry(host.window()).width, editor_width);
  EXPECT_TRUE(host.logHas("scaleFactor> is not a float"));
}

TEST_F(BadInput, AScaleFactorOfAnotherSizeIsNotUsed) {
  const float scale = 2;
  ASSERT_TRUE(openWith({option(LV2_UI__scaleFactor, LV2_ATOM__Float, 2, &scale)}));
  EXPECT_EQ(user.geometry(host.window()).width, editor_width);
  EXPECT_TRUE(host.logHas("scaleFactor> is not a float"));
}

TEST_F(BadInput, ScaleFactorsOutOfRangeAreClamped) {
  const float large = 40;
  ASSERT_TRUE(openWith({option(LV2_UI__scaleFactor, LV2_ATOM__Float, sizeof large, &large)}));
  EXPECT_EQ(user.geometry(host.window()).width, 3 * editor_width);
  EXPECT_TRUE(host.logHas("is taken as 3"));
  host.close();
  const float small = -1;
  ASSERT_TRUE(openWith({option(LV2_UI__scaleFactor, LV2_ATOM__Float, sizeof small, &small)}));
  EXPECT_EQ(user.geometry(host.window()).width, editor_width);
  EXPECT_TRUE(host.logHas("is taken as 1"));
}

TEST_F(BadInput, OptionsThatAreNoNumbersOrTextsAreNotUsed) {
  const float no_number = std::numeric_limits<float>::quiet_NaN();
  ASSERT_TRUE(openWith({option(LV2_UI__scaleFactor, LV2_ATOM__Float, sizeof no_number, &no_number),
                        option(LV2_UI__updateRate, LV2_ATOM__Float, sizeof no_number, &no_number),
                        option(LV2_UI__windowTitle, LV2_ATOM__Float, sizeof no_number, &no_number)}));
  EXPECT_EQ(user.geometry(host.window()).width, editor_width);
  EXPECT_TRUE(host.logHas("scale factor is not a number"));
  EXPECT_TRUE(host.logHas("update rate"));
  EXPECT_TRUE(host.logHas("windowTitle> is not a string"));
}

TEST_F(BadInput, EventsOfPortsThatAreNoParametersAreRefused) {
  open();
  const float value = 1;
  for (const uint32_t port : {0U, 3U, 11U, 0xffffffffU})
    expectRefused(port, sizeof value, 0, &value, "none of the parameters'");
}

TEST_F(BadInput, EventsOfWrongSizesAndFormatsAreRefused) {
  open();
  const double value = 1;
  expectRefused(depth_port, sizeof value, 0, &value, "instead of a float");
  expectRefused(left_rate_port, 0, 0, &value, "instead of a float");
  expectRefused(left_index_port, sizeof(float), 0, nullptr, "instead of a float");
  expectRefused(depth_port, sizeof(float), 99, &value, "unknown format");
}

TEST_F(BadInput, TheFloatProtocolIsKnownByItsNumberToo) {
  open();
  const auto before = picture(host.window());
  const float value = 1;
  host.event(depth_port, sizeof value, host.number(LV2_UI__floatProtocol), &value);
  host.idleFor(0.12);
  EXPECT_FALSE(picture(host.window()) == before);
  EXPECT_THAT(host.log(), IsEmpty());
}

TEST_F(BadInput, ValuesThatAreNoNumbersAreRefused) {
  open();
  const float no_number = std::numeric_limits<float>::quiet_NaN();
  const float infinite = std::numeric_limits<float>::infinity();
  expectRefused(depth_port, sizeof no_number, 0, &no_number, "not a finite number");
  expectRefused(left_rate_port, sizeof infinite, 0, &infinite, "not a finite number");
}

TEST_F(BadInput, ValuesOutOfRangeAreShownAsTheNearestInRange) {
  open();
  host.set(left_index_port, 20);
  host.idleFor(0.12);
  const auto most = picture(host.window());
  host.set(left_index_port, 3);
  host.idleFor(0.12);
  host.set(left_index_port, 1e30F);
  host.idleFor(0.12);
  EXPECT_TRUE(picture(host.window()) == most);
  EXPECT_TRUE(host.logHas("is taken as 20"));
}

TEST_F(BadInput, ThousandsOfBadEventsDoNotFillTheLog) {
  open();
  const float value = 1;
  for (uint32_t port = 100; port < 10000; ++port)
    host.event(port, sizeof value, 0, &value);
  EXPECT_LE(host.log().size(), 64U);
}

TEST_F(BadInput, SizesWithoutSenseAreRefused) {
  open();
  for (const auto& [width, height] : {std::pair(0, 0), std::pair(-5, 100), std::pair(100, 1 << 20)})
    EXPECT_NE(host.resize(width, height), 0);
  EXPECT_EQ(user.geometry(host.window()).width, editor_width);
}

}  // namespace
}  // namespace ondex::test
