// SPDX-License-Identifier: MIT
// The bundle as hosts find it, in the build's own LV2 path.

#include <gtest/gtest.h>
#include <lilv/lilv.h>

#include <array>
#include <string>

#include "plugin.h"

namespace ondex::test {
namespace {

/// A world that knows the build's bundle and LV2's own.
class EffectBundle : public ::testing::Test {
 protected:
  EffectBundle() {
    LilvNode* path = lilv_new_string(world_, ONDEX_LV2_PATH);
    lilv_world_set_option(world_, LILV_OPTION_LV2_PATH, path);
    lilv_node_free(path);
    lilv_world_load_all(world_);
    LilvNode* uri = lilv_new_uri(world_, "urn:kelvane:ondex");
    plugin_ = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world_), uri);
    lilv_node_free(uri);
  }
  ~EffectBundle() override { lilv_world_free(world_); }
  void SetUp() override { ASSERT_NE(plugin_, nullptr); }

  /// The text of a node that lilv gives away.
  static std::string text(LilvNode* owned) {
    std::string result = owned == nullptr ? "" : lilv_node_as_string(owned);
    lilv_node_free(owned);
    return result;
  }
  const LilvPort* port(uint32_t index) const { return lilv_plugin_get_port_by_index(plugin_, index); }
  /// The first value of a port's property, or nothing.
  std::string property(uint32_t index, const char* uri) const {
    LilvNode* predicate = lilv_new_uri(world_, uri);
    LilvNode* value = lilv_port_get(plugin_, port(index), predicate);
    lilv_node_free(predicate);
    return text(value);
  }
  bool is_a(uint32_t index, const char* class_uri) const {
    LilvNode* type = lilv_new_uri(world_, class_uri);
    const bool result = lilv_port_is_a(plugin_, port(index), type);
    lilv_node_free(type);
    return result;
  }
  std::string symbol(uint32_t index) const {
    return lilv_node_as_string(lilv_port_get_symbol(plugin_, port(index)));
  }
  std::string name(uint32_t index) const { return text(lilv_port_get_name(plugin_, port(index))); }

  LilvWorld* world_ = lilv_world_new();
  const LilvPlugin* plugin_ = nullptr;
};

TEST_F(EffectBundle, IsACompleteDescription) {
  EXPECT_TRUE(lilv_plugin_verify(plugin_));
  EXPECT_EQ(text(lilv_plugin_get_name(plugin_)), "Ondex");
  EXPECT_EQ(text(lilv_plugin_get_author_name(plugin_)), "Kelvane");
  EXPECT_STREQ(lilv_node_as_uri(lilv_plugin_class_get_uri(lilv_plugin_get_class(plugin_))),
               LV2_CORE__ModulatorPlugin);
  EXPECT_EQ(lilv_plugin_get_num_ports(plugin_), 11U);
}

TEST_F(EffectBundle, NamesItsLicence) {
  LilvNode* license = lilv_new_uri(world_, "http://usefulinc.com/ns/doap#license");
  LilvNodes* values = lilv_plugin_get_value(plugin_, license);
  EXPECT_EQ(lilv_nodes_size(values), 1U);
  EXPECT_STREQ(lilv_node_as_string(lilv_nodes_get_first(values)), "https://spdx.org/licenses/MIT");
  lilv_nodes_free(values);
  lilv_node_free(license);
}

TEST_F(EffectBundle, PromisesToRunInRealTimeAndAsksForNothing) {
  LilvNode* real_time = lilv_new_uri(world_, LV2_CORE__hardRTCapable);
  EXPECT_TRUE(lilv_plugin_has_feature(plugin_, real_time));
  lilv_node_free(real_time);
  LilvNodes* required = lilv_plugin_get_required_features(plugin_);
  EXPECT_EQ(lilv_nodes_size(required), 0U);
  lilv_nodes_free(required);
}

TEST_F(EffectBundle, HasASideOfSoundAtEachOfTheFirstFourPorts) {
  constexpr std::array symbols = {"left_in", "right_in", "left_out", "right_out"};
  constexpr std::array names = {"Left In", "Right In", "Left Out", "Right Out"};
  const std::string side = "http://lv2plug.in/ns/ext/port-groups#";
  for (uint32_t i = 0; i < 4; ++i) {
    EXPECT_EQ(symbol(i), symbols[i]);
    EXPECT_EQ(name(i), names[i]);
    EXPECT_TRUE(is_a(i, LV2_CORE__AudioPort));
    EXPECT_TRUE(is_a(i, i < 2 ? LV2_CORE__InputPort : LV2_CORE__OutputPort));
    EXPECT_EQ(property(i, LV2_CORE__designation), side + (i % 2 == 0 ? "left" : "right"));
  }
}

TEST_F(EffectBundle, HasTheSevenParametersAtThePortsAfterThem) {
  struct Parameter {
    const char* symbol;
    const char* name;
    float maximum;
    float default_value;
    const char* unit;
  };
  const std::string hertz = "http://lv2plug.in/ns/extensions/units#hz";
  const std::string coefficient = "http://lv2plug.in/ns/extensions/units#coef";
  const std::string radian = "urn:kelvane:ondex#radian";
  const std::array<Parameter, 7> parameters = {{
      {"left_tremolo_rate", "Left Tremolo Rate", 20, 0, hertz.c_str()},
      {"right_tremolo_rate", "Right Tremolo Rate", 20, 0, hertz.c_str()},
      {"tremolo_depth", "Tremolo Depth", 1, 0.5F, coefficient.c_str()},
      {"left_tremolo_mod_factor", "Left Tremolo Mod Factor", 20, 0, coefficient.c_str()},
      {"left_tremolo_mod_index", "Left Tremolo Mod Index", 20, 0, radian.c_str()},
      {"right_tremolo_mod_factor", "Right Tremolo Mod Factor", 20, 0, coefficient.c_str()},
      {"right_tremolo_mod_index", "Right Tremolo Mod Index", 20, 0, radian.c_str()},
  }};
  std::array<float, 11> minima;
  std::array<float, 11> maxima;
  std::array<float, 11> defaults;
  lilv_plugin_get_port_ranges_float(plugin_, minima.data(), maxima.data(), defaults.data());
  for (uint32_t i = 0; i < 7; ++i) {
    const Parameter& expected = parameters[i];
    const uint32_t index = 4 + i;
    EXPECT_EQ(symbol(index), expected.symbol);
    EXPECT_EQ(name(index), expected.name);
    EXPECT_TRUE(is_a(index, LV2_CORE__ControlPort));
    EXPECT_TRUE(is_a(index, LV2_CORE__InputPort));
    EXPECT_EQ(minima[index], 0);
    EXPECT_EQ(maxima[index], expected.maximum);
    EXPECT_EQ(defaults[index], expected.default_value);
    EXPECT_EQ(property(index, "http://lv2plug.in/ns/extensions/units#unit"), expected.unit);
  }
}

TEST_F(EffectBundle, LeadsToTheEffect) {
  LilvInstance* instance = lilv_plugin_instantiate(plugin_, 48000, nullptr);
  ASSERT_NE(instance, nullptr);
  EXPECT_STREQ(lilv_instance_get_uri(instance), "urn:kelvane:ondex");
  Stereo sound = constant(64, 1);
  Controls controls = default_controls;
  for (uint32_t i = 0; i < 4; ++i)
    lilv_instance_connect_port(instance, i, i % 2 == 0 ? sound.left.data() : sound.right.data());
  for (uint32_t i = 0; i < control_count; ++i)
    lilv_instance_connect_port(instance, first_control + i, &controls[i]);
  lilv_instance_activate(instance);
  lilv_instance_run(instance, 64);
  lilv_instance_deactivate(instance);
  lilv_instance_free(instance);
  EXPECT_EQ(sound, constant(64, 0.75F));
}

}  // namespace
}  // namespace ondex::test
