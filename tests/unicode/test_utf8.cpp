// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <string>

#include "unicode/utf8_text.h"

namespace cocoa {
namespace {

TEST(Utf8, ValidTextStaysAsItIs) {
  for (const std::string_view text : {"", "a\x7f", "\u00e9", "\u0800\uffff", "\U00010000\U0010ffff"}) {
    EXPECT_TRUE(is_valid_utf8(text)) << text;
    EXPECT_EQ(valid_utf8(text), text);
  }
}

TEST(Utf8, EachByteThatIsNotValidIsReplaced) {
  EXPECT_EQ(valid_utf8("a\xff"
                       "b"),
            "a\ufffdb");
  EXPECT_EQ(valid_utf8("\x80\xbf"), "\ufffd\ufffd");
  // Cut off, in the middle and at the end.
  EXPECT_EQ(valid_utf8("\xe2\x82 \xf0\x9f\x98"), "\ufffd\ufffd \ufffd\ufffd\ufffd");
  EXPECT_EQ(valid_utf8(std::string_view("a\0b", 3)), "a\ufffdb");
}

TEST(Utf8, WhatHasAShorterFormOrIsNoCharacterIsNotValid) {
  for (const std::string_view text :
       {"\xc0\x80", "\xc1\xbf", "\xe0\x9f\xbf", "\xf0\x8f\xbf\xbf", "\xed\xa0\x80", "\xed\xbf\xbf",
        "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xf8\x88\x80\x80\x80"})
    EXPECT_FALSE(is_valid_utf8(text));
}

TEST(Utf8, CodePointsAreDecodedInAllLengths) {
  const std::string_view text = "z\u00e9\u20ac\U0001F600";
  const CodePoint expected[] = {{'z', 1}, {0xe9, 2}, {0x20ac, 3}, {0x1F600, 4}};
  size_t at = 0;
  for (const CodePoint& wanted : expected) {
    const CodePoint c = code_point_at(text, at);
    EXPECT_EQ(c.value, wanted.value);
    EXPECT_EQ(c.length, wanted.length);
    at += c.length;
  }
  EXPECT_EQ(at, text.size());
}

}  // namespace
}  // namespace cocoa
