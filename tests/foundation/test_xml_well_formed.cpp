// SPDX-License-Identifier: MIT
#include "foundation/private/xml_well_formed.h"

#include <gtest/gtest.h>

#include <string>

namespace cocoa {
namespace {

TEST(XmlFault, ThereIsNoneInWholeDocuments) {
  for (const char* text : {"<a/>",
                           "<a></a>",
                           "<a />",
                           "<a\n></a\t>",
                           "\xEF\xBB\xBF<a/>",
                           "<?xml version=\"1.0\"?><a/>",
                           "<?xml version='1.1' encoding='UTF-8' standalone='yes' ?>\n<a/>\n",
                           "<!-- c --><a/><!-- c --><?p?>",
                           "<!DOCTYPE a><a/>",
                           "<!DOCTYPE a SYSTEM 'u'><a/>",
                           R"(<!DOCTYPE a PUBLIC "-//x" "http://u" ><!-- c --><a/>)",
                           "<a b='1' c=\"'\"/>",
                           "<a b = '&lt;&#10;'/>",
                           "<a>t&amp;&lt;&gt;&quot;&apos;&#65;&#x41;&#x10FFFF;</a>",
                           "<a><b/>t<c>u</c><!-- c --><?p q?></a>",
                           "<a><![CDATA[<&]] >]]></a>",
                           "<a>]] ></a>",
                           "<_a:b-c.d1/>",
                           "<a>\xC3\xA9</a>",
                           "<a>></a>",
                           "<a><a><a/></a></a>",
                           "<?p x ? > ?><a/>"})
    EXPECT_TRUE(check_xml(text)) << text;
}

TEST(XmlFault, IsFoundWhereTheLibraryReadsOn) {
  for (const char* text : {"",
                           " ",
                           "text",
                           "<a>",
                           "</a>",
                           "<a></b>",
                           "<a/><a/>",
                           "<a/>text",
                           "text<a/>",
                           "<a/>\x01",
                           "<a>\x02</a>",
                           "<a>\xFF</a>",
                           "<a>\xC3</a>",
                           "<1/>",
                           "< a/>",
                           "<a",
                           "<a b/>",
                           "<a b=1/>",
                           "<a b='1'c='2'/>",
                           "<a b='1' b='2'/>",
                           "<a b='<'/>",
                           "<a b='&x;'/>",
                           "<a b='1/>",
                           "<a/ >",
                           "<a>&</a>",
                           "<a>&x;</a>",
                           "<a>&amp</a>",
                           "<a>&;</a>",
                           "<a>&#;</a>",
                           "<a>&#x;</a>",
                           "<a>&#0;</a>",
                           "<a>&#xD800;</a>",
                           "<a>&#x110000;</a>",
                           "<a>&#99999999999999999999;</a>",
                           "<a>&#1a;</a>",
                           "<a>]]></a>",
                           "<a><![CDATA[x</a>",
                           "<a><!-- -- --></a>",
                           "<a><!-- x</a>",
                           "<a><!-- x ---></a>",
                           "<a><?xml x?></a>",
                           " <?xml version='1.0'?><a/>",
                           "<?xml?><a/>",
                           "<?xml encoding='UTF-8'?><a/>",
                           "<?xml version='1.0' encoding='UTF-16'?><a/>",
                           "<?xml version='2.0'?><a/>",
                           "<?xml version='1.0' version='1.0'?><a/>",
                           "<?xml version='1.0'encoding='UTF-8'?><a/>",
                           "<?xml version='1.0' standalone='maybe'?><a/>",
                           "<?xml version='1.0' x='y'?><a/>",
                           "<?\x3f><a/>",
                           "<?p!?><a/>",
                           "<!DOCTYPE a [<!ENTITY x 'y'>]><a/>",
                           "<!DOCTYPE><a/>",
                           "<!DOCTYPE a PUBLIC '<' 'u'><a/>",
                           "<!DOCTYPE a PUBLIC 'x'><a/>",
                           "<!DOCTYPE a><!DOCTYPE a><a/>",
                           "<a/><!DOCTYPE a>",
                           "<![CDATA[x]]>",
                           "<a/><![CDATA[x]]>",
                           "<>",
                           "</>",
                           "<a></a",
                           "<a><b></a></b>"})
    EXPECT_FALSE(check_xml(text)) << text;
  EXPECT_FALSE(check_xml(std::string("<a/>\0", 5)));
  EXPECT_FALSE(check_xml(std::string("<a>\0</a>", 8)));
}

TEST(XmlFault, IsToldWithItsLine) {
  EXPECT_EQ(check_xml("<a>\n<b></a>").cause(), "line 2: an end of an element that is not open");
  EXPECT_EQ(check_xml("<a/>\n\ntext").cause(), "line 3: something beside the one element of the document");
}

TEST(XmlFault, DeepNestingTakesNoStack) {
  std::string deep;
  for (int i = 0; i < 300000; ++i)
    deep += "<a>";
  EXPECT_FALSE(check_xml(deep));
  for (int i = 0; i < 300000; ++i)
    deep += "</a>";
  EXPECT_TRUE(check_xml(deep));
}

}  // namespace
}  // namespace cocoa
