// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <limits>

#include "stand_ins.h"

namespace cocoa::stand_in {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Loads one object whose element has the attributes and children given and shows its decoder to `look`.
bool decode(std::string_view attributes, std::string_view children,
            const std::function<void(InterfaceDecoder&)>& look) {
  const NSAutoreleasePool pool;
  bool seen = false;
  Probe::look = [&](InterfaceDecoder& decoder) {
    seen = true;
    look(decoder);
  };
  const bool loaded = load(document(R"(<customObject id="1" customClass="Probe" )" + std::string(attributes) +
                                    ">" + std::string(children) + "</customObject>"));
  Probe::look = nullptr;
  EXPECT_TRUE(seen);
  return loaded;
}

TEST(InterfaceDecoder, ReadsAttributes) {
  EXPECT_TRUE(decode(R"(title="a &lt;&amp;&gt; é" tag="-12" on="YES" off="NO" alpha="-0.125e1" style="b")",
                     "", [](InterfaceDecoder& decoder) {
                       static constexpr std::string_view styles[] = {"a", "b"};
                       EXPECT_EQ(decoder.elementName(), "customObject");
                       EXPECT_EQ(decoder.attribute("title"), "a <&> é");
                       EXPECT_EQ(decoder.integer("tag", 0), -12);
                       EXPECT_TRUE(decoder.boolean("on", false));
                       EXPECT_FALSE(decoder.boolean("off", true));
                       EXPECT_EQ(decoder.number("alpha", 0), -1.25);
                       EXPECT_EQ(decoder.choice("style", styles, 0), 1U);
                     }));
}

TEST(InterfaceDecoder, AnswersForAttributesThatAreAbsent) {
  EXPECT_TRUE(decode("", "", [](InterfaceDecoder& decoder) {
    static constexpr std::string_view styles[] = {"a", "b", "c"};
    EXPECT_EQ(decoder.attribute("title"), std::nullopt);
    EXPECT_EQ(decoder.integer("tag", 7), 7);
    EXPECT_TRUE(decoder.boolean("on", true));
    EXPECT_FALSE(decoder.boolean("on", false));
    EXPECT_EQ(decoder.number("alpha", 0.5), 0.5);
    EXPECT_EQ(decoder.choice("style", styles, 2), 2U);
    EXPECT_EQ(decoder.reference("selectedItem"), nullptr);
  }));
}

TEST(InterfaceDecoder, ReadsChildrenByKey) {
  EXPECT_TRUE(decode("", R"(
      <rect key="bounds" x="1.5" y="-2" width="3" height="0"/>
      <real key="maximum" value="1e1"/>
      <integer key="minimum" value="-3"/> <mask key="styleMask" titled="YES"/>)",
                     [](InterfaceDecoder& decoder) {
                       EXPECT_EQ(decoder.rect("bounds"), NSMakeRect(1.5, -2, 3, 0));
                       EXPECT_EQ(decoder.real("maximum"), 10.0);
                       EXPECT_EQ(decoder.real("minimum"), -3.0);
                       EXPECT_TRUE(decoder.child("styleMask").exists());
                       EXPECT_EQ(decoder.child("styleMask").elementName(), "mask");
                       EXPECT_TRUE(decoder.child("styleMask").boolean("titled", false));
                     }));
}

TEST(InterfaceDecoder, AnswersForChildrenThatAreAbsent) {
  EXPECT_TRUE(decode("", "", [](InterfaceDecoder& decoder) {
    EXPECT_FALSE(decoder.child("styleMask").exists());
    EXPECT_EQ(decoder.child("styleMask").elementName(), "");
    EXPECT_TRUE(decoder.child("styleMask").boolean("titled", true));
    EXPECT_FALSE(decoder.child("a").child("b").exists());
    EXPECT_EQ(decoder.rect("bounds"), std::nullopt);
    EXPECT_EQ(decoder.real("maximum"), std::nullopt);
    EXPECT_EQ(decoder.object("cell"), nullptr);
    EXPECT_THAT(decoder.objects("items"), IsEmpty());
    EXPECT_EQ(decoder.autoresizingMask(), 0U);
  }));
}

TEST(InterfaceDecoder, ReadsEachBitOfAnAutoresizingMask) {
  const auto mask_of = [](std::string_view attributes) {
    unsigned mask = ~0U;
    EXPECT_TRUE(decode("", "<autoresizingMask key=\"autoresizingMask\" " + std::string(attributes) + "/>",
                       [&](InterfaceDecoder& decoder) { mask = decoder.autoresizingMask(); }));
    return mask;
  };
  EXPECT_EQ(mask_of(""), 0U);
  EXPECT_EQ(mask_of(R"(flexibleMinX="YES")"), 1U);
  EXPECT_EQ(mask_of(R"(widthSizable="YES")"), 2U);
  EXPECT_EQ(mask_of(R"(flexibleMaxX="YES")"), 4U);
  EXPECT_EQ(mask_of(R"(flexibleMinY="YES")"), 8U);
  EXPECT_EQ(mask_of(R"(heightSizable="YES" widthSizable="NO")"), 16U);
  EXPECT_EQ(mask_of(R"(flexibleMaxY="YES")"), 32U);
  EXPECT_EQ(mask_of(R"(widthSizable="YES" heightSizable="YES")"), 18U);
}

TEST(InterfaceDecoder, FindsAnObjectMadeBeforeByItsId) {
  EXPECT_TRUE(
      decode(R"(chosen="5")", R"(<color key="color" id="5" red="1"/>)", [](InterfaceDecoder& decoder) {
        const auto color = decoder.object("color");
        EXPECT_EQ(decoder.reference("chosen"), color.get());
      }));
}

TEST(InterfaceDecoder, FailsForAnIdOfWhichNothingWasMade) {
  for (const std::string_view id : {"5", "9", ""}) {
    const Log log;
    EXPECT_FALSE(decode("chosen=\"" + std::string(id) + '"', R"(<color key="color" id="5"/>)",
                        [](InterfaceDecoder& decoder) { EXPECT_EQ(decoder.reference("chosen"), nullptr); }));
    EXPECT_THAT(log.lines, ElementsAre("Demo.xib: <customObject id=\"1\">: chosen=\"" + std::string(id) +
                                       "\" is not an object of this file made so far"));
  }
}

TEST(InterfaceDecoder, FailsForChildrenOfAnotherKind) {
  const auto failure = [](std::string_view child, const std::function<void(InterfaceDecoder&)>& look) {
    const Log log;
    EXPECT_FALSE(decode("", child, look));
    return log.lines.empty() ? std::string() : log.lines.front();
  };
  constexpr std::string_view number = R"(<real key="k" value="1"/>)";
  const std::string place = R"(Demo.xib: <real key="k"> in <customObject id="1">: )";
  EXPECT_EQ(failure(number, [](InterfaceDecoder& d) { d.rect("k"); }), place + "is not a rect");
  EXPECT_EQ(failure(R"(<string key="k">1</string>)", [](InterfaceDecoder& d) { d.real("k"); }),
            R"(Demo.xib: <string key="k"> in <customObject id="1">: is not a number)");
  EXPECT_EQ(
      failure(R"(<rect key="k"/>)", [](InterfaceDecoder& d) { d.object("k"); }),
      R"(Demo.xib: <rect key="k"> in <customObject id="1">: is of no kind that can be made into an object)");
}

TEST(InterfaceDecoder, ReadsIntegersOfSixtyFourBits) {
  EXPECT_TRUE(
      decode(R"(least="-9223372036854775808" most="9223372036854775807")", "", [](InterfaceDecoder& decoder) {
        EXPECT_EQ(decoder.integer("least", 0), std::numeric_limits<int64_t>::min());
        EXPECT_EQ(decoder.integer("most", 0), std::numeric_limits<int64_t>::max());
      }));
  const Log log;
  EXPECT_FALSE(decode(R"(more="9223372036854775808")", "",
                      [](InterfaceDecoder& decoder) { EXPECT_EQ(decoder.integer("more", 3), 3); }));
}

/// Gives the process a locale with a decimal comma if one is installed: numbers must read the same in either.
class CommaLocale {
 public:
  CommaLocale() {
    for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "sv_SE.UTF-8", "de_DE", "fr_FR"}) {
      if (std::setlocale(LC_ALL, name))
        return;
    }
  }
  ~CommaLocale() { std::setlocale(LC_ALL, "C"); }
};

TEST(InterfaceDecoder, ReadsNumbersWhateverTheLocale) {
  const CommaLocale locale;
  const NSAutoreleasePool pool;
  const auto owner = make<Owner>();
  ASSERT_TRUE(load(demo_document, owner.get()));
  EXPECT_EQ(owner->well->color->green, 0.15);
  const Log log;
  EXPECT_FALSE(decode(R"(alpha="0,5")", "", [](InterfaceDecoder& decoder) { decoder.number("alpha", 0); }));
}

}  // namespace
}  // namespace cocoa::stand_in
