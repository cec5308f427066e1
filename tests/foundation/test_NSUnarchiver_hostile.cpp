// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "archived_samples.h"
#include "foundation/NSLog.h"

namespace cocoa {
namespace {

using namespace samples;
using testing::HasSubstr;

/// Why the bytes are refused; empty when they are not.
std::string refusal(std::vector<uint8_t> bytes) {
  std::string logged;
  const NSLogHook hook([&](std::string_view message) { logged = message; });
  return unarchive(std::move(bytes)) ? std::string() : logged;
}

std::string refusal(const std::string& spelled) {
  return refusal(bytes_of(std::string(kLittleEndianHeader) + spelled));
}

std::vector<std::vector<uint8_t>> valid_archives() {
  const auto red = make<ArchivedColor>(int8_t{2}, std::vector<float>{1, 0.25F, -200, 1});
  const auto white = make<ArchivedColor>(int8_t{4}, std::vector<float>{0.5F, 40000});
  return {archive(*red), archive(*white), archive(*make<Pair>(red, make<Pair>(white, red))),
          color_bytes("84 01 63 02 84 04 66 66 66 66 00 83 3E 19 99 9A 83 3F 4C CC CD 81 00 01 86",
                      kBigEndianHeader)};
}

/// Whatever is accepted must be an object that can be written and read again.
void expect_refused_or_sound(std::vector<uint8_t> bytes) {
  const NSLogHook quiet([](std::string_view) {});
  const Ref<NSObject> object = unarchive(std::move(bytes));
  if (!object)
    return;
  const auto again = archive(*object);
  const Ref<NSObject> reread = unarchive(again);
  ASSERT_TRUE(reread);
  EXPECT_EQ(archive(*reread), again);
}

TEST(NSUnarchiver, SaysWhyItRefuses) {
  EXPECT_THAT(refusal(std::vector<uint8_t>{}), HasSubstr("too early"));
  EXPECT_THAT(refusal(bytes_of("04 0B 'streamtypes' 81 E8 03 84 01 '@' 85")),
              HasSubstr("not a typed stream"));
  EXPECT_THAT(refusal(bytes_of("03 0B 'streamtyped' 81 E8 03 84 01 '@' 85")),
              HasSubstr("not a typed stream"));
  EXPECT_THAT(refusal("84 01 '@' 85"), HasSubstr("no object"));
  EXPECT_THAT(refusal("84 01 'i' 05"), HasSubstr("other values"));
  EXPECT_THAT(refusal("84 FF"), HasSubstr("negative length"));
  EXPECT_THAT(refusal("84 83 00 00 00 00"), HasSubstr("a tag where a number belongs"));
  EXPECT_THAT(refusal("92"), HasSubstr("a reference to nothing"));
  EXPECT_THAT(refusal("84 01 '@' 84 85 86"), HasSubstr("without a class"));
  EXPECT_THAT(refusal("84 01 '@' 84 92 86"), HasSubstr("without a class"));
  EXPECT_THAT(refusal("84 01 '@' 84 84 84 06 'NSMenu' 00 85 86"), HasSubstr("not known"));
  EXPECT_THAT(refusal("84 01 '@' 84 84 84 07 'NSColor' 01 85 86"), HasSubstr("later version"));
  EXPECT_THAT(refusal(color_bytes("84 01 63 04 84 02 66 66 00 01 86 00")), HasSubstr("follows the object"));
  EXPECT_THAT(refusal(color_bytes("84 01 63 04 84 02 66 66 00 01 95 00 86")), HasSubstr("more in it"));
  EXPECT_THAT(refusal(color_bytes("84 01 63 07 84 02 66 66 00 01 86")), HasSubstr("cannot be"));
  EXPECT_THAT(refusal(color_bytes("84 01 63 04 84 04 66 66 66 66 00 00 00 00 86")),
              HasSubstr("other values"));
}

TEST(NSUnarchiver, RefusesReferencesThatDoNotFit) {
  const std::string pair = "84 01 '@' 84 84 84 04 'Pair' 00 85 ";
  EXPECT_EQ(refusal(pair + "92 85 92 85 86"), "");
  EXPECT_THAT(refusal(pair + "92 92 92 85 86"), HasSubstr("finished object")) << "the pair in itself";
  EXPECT_THAT(refusal(pair + "92 93 92 85 86"), HasSubstr("finished object")) << "a class for an object";
  EXPECT_THAT(refusal(pair + "92 94 92 85 86"), HasSubstr("reference to nothing"));
  EXPECT_THAT(refusal(pair + "92 82 FF FF FF 7F 92 85 86"), HasSubstr("reference to nothing"));
  EXPECT_THAT(refusal(pair + "92 82 00 00 00 80 92 85 86"), HasSubstr("reference to nothing"));
}

TEST(NSUnarchiver, DoesNotBelieveLengths) {
  EXPECT_THAT(refusal("84 82 FF FF FF 7F '@'"), HasSubstr("too early"));
  EXPECT_THAT(refusal("84 01 '@' 84 84 84 81 FF 7F 'NSColor'"), HasSubstr("too early"));
}

TEST(NSUnarchiver, BoundsTheDepth) {
  std::string spelled = "84 01 '@' 84 84 84 04 'Pair' 00 85 ";
  for (int i = 0; i < 100000; ++i)
    spelled += "92 84 93 ";
  EXPECT_THAT(refusal(spelled), HasSubstr("too deeply"));
}

TEST(NSUnarchiver, ReadsAClassChainOfAnyLength) {
  std::string chain = "84 01 '@' 84 84 84 07 'NSColor' 00 ";
  for (int i = 0; i < 100000; ++i)
    chain += "84 93 00 ";
  EXPECT_EQ(refusal(chain + "85 84 01 63 04 84 02 66 66 00 01 86"), "");
  EXPECT_THAT(refusal(chain), HasSubstr("too early"));
}

TEST(NSUnarchiver, RefusesEveryTruncation) {
  for (const auto& whole : valid_archives()) {
    ASSERT_EQ(refusal(whole), "");
    for (size_t length = 0; length < whole.size(); ++length) {
      const std::vector<uint8_t> part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
      EXPECT_NE(refusal(part), "") << length << " of " << whole.size() << " bytes";
    }
  }
}

TEST(NSUnarchiver, SurvivesEveryChangeOfOneByte) {
  for (const auto& whole : valid_archives()) {
    for (size_t place = 0; place < whole.size(); ++place) {
      auto changed = whole;
      for (int change = 1; change < 256; ++change) {
        changed[place] = static_cast<uint8_t>(whole[place] ^ change);
        expect_refused_or_sound(changed);
      }
    }
  }
}

TEST(NSUnarchiver, SurvivesRandomDamage) {
  constexpr unsigned kSeed = 20240817;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  const auto below = [&](size_t limit) {
    return std::uniform_int_distribution<size_t>(0, limit - 1)(random);
  };
  const auto archives = valid_archives();
  for (int round = 0; round < 20000; ++round) {
    auto bytes = archives[below(archives.size())];
    for (size_t changes = 1 + below(6); changes > 0 && !bytes.empty(); --changes) {
      const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(below(bytes.size()));
      switch (below(4)) {
        case 0:
          *place = static_cast<uint8_t>(below(256));
          break;
        case 1:
          *place = static_cast<uint8_t>(0x80 + below(0x20));  // tags and references
          break;
        case 2:
          bytes.erase(place);
          break;
        default:
          bytes.insert(place, static_cast<uint8_t>(0x80 + below(0x20)));
      }
    }
    expect_refused_or_sound(bytes);
  }
}

}  // namespace
}  // namespace cocoa
