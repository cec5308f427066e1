// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>

#include <chrono>
#include <cstdlib>
#include <optional>

#include "archived_samples.h"
#include "foundation/CFPreferences.h"
#include "foundation/NSData.h"
#include "foundation/NSDictionary.h"
#include "foundation/NSString.h"
#include "foundation/private/preferences_location.h"
#include "store_test_support.h"

namespace cocoa {
namespace {

using namespace store_tests;
using testing::HasSubstr;

constexpr const char* kInfoColor = "com.kelvane.gyrand_info_color";

Ref<NSObject> copy(CFStringRef key) {
  return CFPreferencesCopyValue(key, kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                                kCFPreferencesCurrentHost);
}

void set(CFStringRef key, const NSObject* value) {
  CFPreferencesSetValue(key, value, kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                        kCFPreferencesCurrentHost);
}

bool synchronize() {
  return CFPreferencesSynchronize(kCFPreferencesAnyApplication, kCFPreferencesCurrentUser,
                                  kCFPreferencesCurrentHost);
}

std::string text_of(const Ref<NSObject>& object) {
  const auto* string = dynamic_cast<const NSString*>(object.get());
  return string ? std::string(string->view()) : "(no text)";
}

/// Each test has a folder of settings, and an empty store in it.
class CFPreferencesTest : public testing::Test {
 protected:
  CFPreferencesTest() {
    if (const char* before = std::getenv("XDG_CONFIG_HOME"))
      before_ = before;
    setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1);
    synchronize();
  }
  ~CFPreferencesTest() override {
    // Once to write what the test has left, once to forget it.
    synchronize();
    synchronize();
    if (before_) {
      setenv("XDG_CONFIG_HOME", before_->c_str(), 1);
    } else {
      unsetenv("XDG_CONFIG_HOME");
    }
  }

  TemporaryFolder folder_;
  std::optional<std::string> before_;
};

TEST_F(CFPreferencesTest, KeepsAnArchivedColour) {
  EXPECT_FALSE(copy(kInfoColor));
  const auto color = make<samples::ArchivedColor>(int8_t{2}, std::vector<float>{0.0F, 0.15F, 0.8F, 1.0F});
  const auto archived = NSArchiver::archivedDataWithRootObject(*color);
  set(kInfoColor, archived.get());
  EXPECT_TRUE(synchronize());
  EXPECT_EQ(
      contents_of(preferences_file()),
      plist("\t\t<key>com.kelvane.gyrand_info_color</key>\n\t\t<data>"
            "BAtzdHJlYW10eXBlZIHoA4QBQISEhAdOU0NvbG9yAISECE5TT2JqZWN0AIWEAWMChARmZmZmAIOamRk+g83MTD8Bhg=="
            "</data>\n"));

  EXPECT_TRUE(synchronize());
  const auto value = copy(kInfoColor);
  const auto* data = dynamic_cast<const NSData*>(value.get());
  ASSERT_TRUE(data);
  EXPECT_TRUE(data->isEqualToData(*archived));
}

TEST_F(CFPreferencesTest, ValuesAreTheCallersOwn) {
  const auto text = make<NSString>("text");
  set("a", text.get());
  EXPECT_EQ(text->retainCount(), 1U);
  const auto value = copy("a");
  EXPECT_EQ(value->retainCount(), 1U);
  EXPECT_FALSE(value == text.get());
  EXPECT_EQ(text_of(value), "text");
}

TEST_F(CFPreferencesTest, ANullValueRemovesTheKey) {
  set("a", make<NSString>("1").get());
  set("b", make<NSString>("2").get());
  EXPECT_TRUE(synchronize());
  set("a", nullptr);
  EXPECT_FALSE(copy("a"));
  EXPECT_TRUE(synchronize());
  EXPECT_EQ(contents_of(preferences_file()), plist("\t\t<key>b</key>\n\t\t<string>2</string>\n"));
}

TEST_F(CFPreferencesTest, DomainsOtherThanTheOneAreRefused) {
  const CFStringRef domains[][3] = {
      {"org.example.app", kCFPreferencesCurrentUser, kCFPreferencesCurrentHost},
      {kCFPreferencesAnyApplication, kCFPreferencesAnyUser, kCFPreferencesCurrentHost},
      {kCFPreferencesAnyApplication, kCFPreferencesCurrentUser, kCFPreferencesAnyHost},
      {nullptr, kCFPreferencesCurrentUser, kCFPreferencesCurrentHost}};
  set("a", make<NSString>("1").get());
  for (const auto& [application, user, host] : domains) {
    Logged logged;
    EXPECT_FALSE(CFPreferencesCopyValue("a", application, user, host));
    CFPreferencesSetValue("a", make<NSString>("2").get(), application, user, host);
    EXPECT_FALSE(CFPreferencesSynchronize(application, user, host));
    std::string line = "Preferences: there is no domain (";
    for (const CFStringRef name : {application, user, host})
      line.append(name ? name : "null").append(name == host ? ").\n" : ", ");
    std::string thrice = line;
    thrice.append(line).append(line);
    EXPECT_EQ(logged.text(), thrice);
  }
  EXPECT_EQ(text_of(copy("a")), "1");
}

TEST_F(CFPreferencesTest, WhatCannotBeStoredIsLoggedAndIgnored) {
  set("a", make<NSString>("1").get());
  const Logged logged;
  set("a", make<NSMutableDictionary>().get());
  EXPECT_THAT(logged.text(), HasSubstr("NSMutableDictionary"));
  set("a", make<NSString>("bell \x07").get());
  set("a", make<NSString>("\xFF").get());
  EXPECT_THAT(logged.text(), HasSubstr("NSString"));
  EXPECT_EQ(text_of(copy("a")), "1");
  set(nullptr, make<NSString>("1").get());
  EXPECT_FALSE(copy(nullptr));
  EXPECT_THAT(logged.text(), HasSubstr("a key that is null"));
}

TEST_F(CFPreferencesTest, ValuesOfOtherKindsAreThereButNeitherDataNorText) {
  put(preferences_file(),
      plist("<key>i</key><integer>1</integer><key>r</key><real>0.5</real><key>b</key><false/>"
            "<key>t</key><date>2009-02-13T23:31:30Z</date><key>a</key><array/><key>d</key><dict/>"
            "<key>n</key><data>***</data><key>s</key><string>t</string>"));
  for (const char* key : {"i", "r", "b", "t", "a", "d", "n"}) {
    const auto value = copy(key);
    EXPECT_TRUE(value) << key;
    EXPECT_FALSE(dynamic_cast<const NSData*>(value.get())) << key;
    EXPECT_FALSE(dynamic_cast<const NSString*>(value.get())) << key;
  }
  EXPECT_EQ(text_of(copy("s")), "t");
  EXPECT_FALSE(copy("absent"));
  const Logged logged;
  set("s", copy("i").get());
  EXPECT_THAT(logged.text(), HasSubstr("cannot be stored"));
  EXPECT_EQ(text_of(copy("s")), "t");
}

TEST_F(CFPreferencesTest, SavingOneKeyLeavesOthersValuesAsTheyWere) {
  const std::string others =
      "\t\t<key>i</key>\n\t\t<integer>007</integer>\n\t\t<key>n</key>\n\t\t<data>***</data>\n"
      "\t\t<key>d</key>\n\t\t<dict>\n\t\t\t<key>k</key>\n\t\t\t<real>1e3</real>\n\t\t</dict>\n";
  put(preferences_file(), plist(others));
  set("a", make<NSString>("1").get());
  EXPECT_TRUE(synchronize());
  EXPECT_EQ(contents_of(preferences_file()), plist(others + "\t\t<key>a</key>\n\t\t<string>1</string>\n"));
}

TEST_F(CFPreferencesTest, WhatIsNotWrittenYetIsWrittenWhenTheProcessEnds) {
  // How it ends is the sanitizers' matter, too.
  result_of_child(start_child([] {
    set("a", make<NSString>("1").get());
    exit(0);
    return 1;
  }));
  EXPECT_EQ(text_of(copy("a")), "1");
}

TEST_F(CFPreferencesTest, AForkedChildLeavesItsParentsChangesToTheParent) {
  set("a", make<NSString>("old").get());
  int ending[2];
  ASSERT_EQ(pipe(ending), 0);
  const pid_t child = start_child([&] {
    close(ending[1]);
    char none = 0;
    if (::read(ending[0], &none, 1) == 0)
      exit(0);
    return 1;
  });
  set("a", make<NSString>("new").get());
  EXPECT_TRUE(synchronize());
  close(ending[1]);
  result_of_child(child);
  close(ending[0]);
  EXPECT_TRUE(synchronize());
  EXPECT_EQ(text_of(copy("a")), "new");
}

TEST_F(CFPreferencesTest, TheHostsThreadDoesNotWaitForALockThatIsHeld) {
  std::filesystem::create_directories(preferences_file().parent_path());
  const std::string lock = preferences_file().string() + ".lock";
  const int holder = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(flock(holder, LOCK_EX), 0);
  const Logged logged;
  set("a", make<NSString>("1").get());
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_FALSE(synchronize());
  // Far below the second after which a holder is known to hang, and far above what it is, for slow machines.
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(500));
  EXPECT_EQ(text_of(copy("a")), "1");
  close(holder);
  EXPECT_TRUE(synchronize());
  EXPECT_THAT(contents_of(preferences_file()), HasSubstr("<string>1</string>"));
}

TEST_F(CFPreferencesTest, WhatIsForgottenReadsAsBefore) {
  set("a", make<NSString>("1").get());
  EXPECT_TRUE(synchronize());
  set("a", make<NSString>("2").get());
  forget_unwritten_preference("a");
  forget_unwritten_preference(nullptr);
  EXPECT_EQ(text_of(copy("a")), "1");
}

TEST_F(CFPreferencesTest, FollowsTheEnvironmentWhenItReadsAgain) {
  set("a", make<NSString>("here").get());
  EXPECT_TRUE(synchronize());
  const TemporaryFolder elsewhere;
  setenv("XDG_CONFIG_HOME", elsewhere.path().c_str(), 1);
  EXPECT_EQ(text_of(copy("a")), "here") << "not yet";
  EXPECT_TRUE(synchronize());
  EXPECT_FALSE(copy("a"));
  setenv("XDG_CONFIG_HOME", folder_.path().c_str(), 1);
  EXPECT_TRUE(synchronize());
  EXPECT_EQ(text_of(copy("a")), "here");
}

TEST_F(CFPreferencesTest, TheFileLiesInTheFolderOfSettings) {
  const std::string file = preferences_file().string();
  EXPECT_THAT(file, testing::StartsWith((folder_ / "ondex/ByHost/GlobalPreferences.").string()));
  EXPECT_THAT(file, testing::EndsWith(".plist"));
}

std::string folder_from(const char* xdg_config_home, const char* home, const char* account_home) {
  return configuration_folder(xdg_config_home, home, account_home).string();
}

TEST(ConfigurationFolder, IsTheFirstAbsoluteOne) {
  EXPECT_EQ(folder_from("/x", "/home/u", "/account"), "/x");
  EXPECT_EQ(folder_from(nullptr, "/home/u", "/account"), "/home/u/.config");
  EXPECT_EQ(folder_from("", "/home/u", "/account"), "/home/u/.config");
  EXPECT_EQ(folder_from("relative", "/home/u", "/account"), "/home/u/.config");
  EXPECT_EQ(folder_from(nullptr, nullptr, "/account"), "/account/.config");
  EXPECT_EQ(folder_from(nullptr, "relative", "/account"), "/account/.config");
  EXPECT_EQ(folder_from("relative", "", ""), "");
  EXPECT_EQ(folder_from(nullptr, nullptr, nullptr), "");
}

TEST(PreferencesHostId, HidesTheMachinesId) {
  const std::string id = preferences_host_id("0123456789abcdef0123456789abcdef\n", "host");
  // FNV-1a with 64 bits of "ondex0123456789abcdef0123456789abcdef".
  EXPECT_EQ(id, "d641601f7c051e79");
  EXPECT_EQ(id, preferences_host_id("0123456789abcdef0123456789abcdef", "other"));
  EXPECT_NE(id, preferences_host_id("0123456789abcdef0123456789abcdee", "host"));
}

TEST(PreferencesHostId, FallsBackOnTheHostsName) {
  EXPECT_EQ(preferences_host_id("", "studio-1.local"), "studio-1.local");
  EXPECT_EQ(preferences_host_id("uninitialized\n", "studio"), "studio");
  EXPECT_EQ(preferences_host_id("0123456789ABCDEF0123456789ABCDEF", "a/b c"), "a_b_c");
  EXPECT_EQ(preferences_host_id("", ""), "UnknownHostID");
}

}  // namespace
}  // namespace cocoa
