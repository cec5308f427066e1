// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <random>

#include "stand_ins.h"

namespace cocoa::stand_in {
namespace {

/// Loads damaged text. Whatever the damage, the load either succeeds or logs one line and leaves nothing.
void load_damaged(const std::string& text) {
  const auto owner = make<Owner>();
  {
    const NSAutoreleasePool pool;
    const Log log;
    const bool loaded = load(text, owner.get());
    EXPECT_EQ(log.lines.size(), loaded ? 0U : 1U) << text;
    if (!loaded) {
      EXPECT_EQ(Object::alive, 1) << text;
      EXPECT_FALSE(owner->root || owner->left || owner->right || owner->field || owner->panel || owner->well);
    }
  }
  EXPECT_EQ(Object::alive, 1) << text;
}

TEST(InterfaceMutations, CutOffAnywhereLoadNothingByHalves) {
  for (size_t length = 0; length < demo_document.size(); ++length)
    load_damaged(std::string(demo_document.substr(0, length)));
}

TEST(InterfaceMutations, WithOneByteChangedLoadNothingByHalves) {
  constexpr unsigned seed = 20240229;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (size_t at = 0; at < demo_document.size(); ++at) {
    std::string text(demo_document);
    text[at] = static_cast<char>(random() & 0xFF);
    load_damaged(text);
  }
}

TEST(InterfaceMutations, WithPiecesMovedAboutLoadNothingByHalves) {
  constexpr unsigned seed = 19991231;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  for (int round = 0; round < 2000; ++round) {
    std::string text(demo_document);
    const auto place = [&] { return random() % text.size(); };
    const std::string piece = text.substr(place(), random() % 200);
    text.erase(place(), random() % 50);
    text.insert(place(), piece);
    load_damaged(text);
  }
}

/// These documents stay well-formed, so that the damage reaches the making of objects and connections.
TEST(InterfaceMutations, WithIdsSwappedLoadNothingByHalves) {
  constexpr unsigned seed = 424242;
  SCOPED_TRACE(seed);
  std::mt19937 random(seed);
  const std::string ids[] = {"10", "11", "12", "13", "14", "15", "16",
                             "17", "40", "41", "42", "-1", "-2", "-3"};
  for (int round = 0; round < 2000; ++round) {
    std::string text(demo_document);
    for (int change = 0; change < 3; ++change) {
      const std::string old_id = '"' + ids[random() % std::size(ids)] + '"';
      const size_t at = text.find(old_id, random() % text.size());
      if (at != text.npos)
        text.replace(at, old_id.size(), '"' + ids[random() % std::size(ids)] + '"');
    }
    load_damaged(text);
  }
}

}  // namespace
}  // namespace cocoa::stand_in
