// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <thread>

#include "foundation/private/preference_store.h"
#include "property_list_values.h"
#include "store_test_support.h"

namespace cocoa {
namespace {

using namespace store_tests;
using testing::HasSubstr;
using testing::Optional;

class PreferenceStoreTest : public testing::Test {
 protected:
  PreferenceStore another() const {
    return PreferenceStore([file = file_] { return file; });
  }
  std::optional<PropertyListValue> written(std::string_view key) const {
    const auto list = PropertyList::fromXML(contents_of(file_));
    return list ? list->value(key) : std::nullopt;
  }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "above" / "store.plist";
  PreferenceStore store_ = another();
};

TEST_F(PreferenceStoreTest, SettingChangesMemoryAndSynchronizingTheFile) {
  EXPECT_FALSE(store_.value("a"));
  store_.setValue("a", text("1"));
  EXPECT_THAT(store_.value("a"), Optional(text("1")));
  EXPECT_FALSE(std::filesystem::exists(file_));

  EXPECT_TRUE(store_.synchronize());
  EXPECT_THAT(written("a"), Optional(text("1")));
  EXPECT_THAT(another().value("a"), Optional(text("1")));

  store_.setValue("a", std::nullopt);
  EXPECT_FALSE(store_.value("a"));
  EXPECT_THAT(written("a"), Optional(text("1")));
  EXPECT_TRUE(store_.synchronize());
  EXPECT_FALSE(written("a"));
}

TEST_F(PreferenceStoreTest, TheFileAndItsFoldersAreForTheUserAlone) {
  store_.setValue("a", text("1"));
  ASSERT_TRUE(store_.synchronize());
  struct stat status {};
  ASSERT_EQ(stat(file_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0600U);
  ASSERT_EQ(stat(file_.parent_path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777U, 0700U);
  EXPECT_EQ(count_of_files(file_.parent_path()), 2U) << "the store and its lock, nothing temporary";
}

TEST_F(PreferenceStoreTest, WritesOnlyTheKeysThatChanged) {
  put(file_, plist("<key>a</key><string>1</string><key>n</key><integer>5</integer>"));
  EXPECT_THAT(store_.value("a"), Optional(text("1")));
  store_.setValue("b", text("2"));
  put(file_, plist("<key>a</key><string>theirs</string><key>n</key><integer>6</integer>"
                   "<key>b</key><string>theirs</string>"));
  EXPECT_TRUE(store_.synchronize());
  EXPECT_EQ(
      contents_of(file_),
      plist("\t\t<key>a</key>\n\t\t<string>theirs</string>\n\t\t<key>n</key>\n\t\t<integer>6</integer>\n"
            "\t\t<key>b</key>\n\t\t<string>2</string>\n"));
  EXPECT_THAT(store_.value("a"), Optional(text("theirs"))) << "what was merged is what is read from now on";
}

TEST_F(PreferenceStoreTest, RemovesOnlyTheKeysThatChanged) {
  put(file_, plist("<key>a</key><integer>1</integer><key>b</key><string>2</string>"));
  store_.setValue("a", std::nullopt);
  EXPECT_TRUE(store_.synchronize());
  EXPECT_EQ(contents_of(file_), plist("\t\t<key>b</key>\n\t\t<string>2</string>\n"));
}

TEST_F(PreferenceStoreTest, WhatEqualsTheLastReadingIsWrittenOverWhatOthersStoredSince) {
  put(file_, plist("<key>a</key><string>1</string>"));
  EXPECT_THAT(store_.value("a"), Optional(text("1")));
  EXPECT_FALSE(store_.value("absent"));
  put(file_, plist("<key>a</key><string>theirs</string><key>absent</key><string>theirs</string>"));
  store_.setValue("a", text("1"));
  store_.setValue("absent", std::nullopt);
  EXPECT_TRUE(store_.synchronize());
  EXPECT_THAT(written("a"), Optional(text("1")));
  EXPECT_FALSE(written("absent"));
}

TEST_F(PreferenceStoreTest, WhatTheFileHoldsAlreadyIsNotWrittenAnew) {
  put(file_, plist("<key>a</key><string>1</string><!-- a user's own -->"));
  const std::string before = contents_of(file_);
  store_.setValue("a", text("1"));
  store_.setValue("absent", std::nullopt);
  EXPECT_TRUE(store_.synchronize());
  EXPECT_EQ(contents_of(file_), before);
  EXPECT_FALSE(store_.hasUnwritten());
}

TEST_F(PreferenceStoreTest, WhatIsForgottenIsNotWritten) {
  put(file_, plist("<key>a</key><string>1</string>"));
  store_.setValue("a", text("2"));
  EXPECT_TRUE(store_.hasUnwritten());
  store_.forgetUnwritten("a");
  store_.forgetUnwritten("never set");
  EXPECT_FALSE(store_.hasUnwritten());
  EXPECT_THAT(store_.value("a"), Optional(text("1")));
  EXPECT_TRUE(store_.synchronize());
  EXPECT_THAT(written("a"), Optional(text("1")));
}

TEST_F(PreferenceStoreTest, TextAndDataOfTheSameBytesAreNotEqual) {
  put(file_, plist("<key>a</key><string>1</string>"));
  store_.setValue("a", std::vector<uint8_t>{'1'});
  EXPECT_TRUE(store_.synchronize());
  EXPECT_THAT(written("a"), Optional(PropertyListValue(std::vector<uint8_t>{'1'})));
}

TEST_F(PreferenceStoreTest, ReadsTheFileAgainOnlyAfterSynchronizing) {
  put(file_, plist("<key>a</key><string>1</string>"));
  EXPECT_THAT(store_.value("a"), Optional(text("1")));
  put(file_, plist("<key>a</key><string>2</string>"));
  EXPECT_THAT(store_.value("a"), Optional(text("1")));
  EXPECT_TRUE(store_.synchronize());
  EXPECT_THAT(store_.value("a"), Optional(text("2")));
}

TEST_F(PreferenceStoreTest, WithoutAPlaceKeepsValuesInMemory) {
  const Logged logged;
  bool has_place = false;
  PreferenceStore store([&] { return has_place ? file_ : std::filesystem::path(); });
  store.setValue("a", text("1"));
  EXPECT_FALSE(store.synchronize());
  EXPECT_THAT(logged.text(), HasSubstr("stay in memory"));
  EXPECT_THAT(store.value("a"), Optional(text("1")));

  has_place = true;
  EXPECT_TRUE(store.synchronize());
  EXPECT_THAT(written("a"), Optional(text("1")));
}

TEST_F(PreferenceStoreTest, ProcessesThatWriteAtTheSameMomentLoseNothing) {
  for (int round = 0; round < 200; ++round) {
    const std::string value = std::to_string(round);
    int start[2];
    ASSERT_EQ(pipe(start), 0);
    pid_t writers[2];
    for (int i = 0; i < 2; ++i) {
      writers[i] = start_child([&] {
        close(start[1]);
        const std::string key = "writer " + std::to_string(i);
        store_.setValue(key, text(value));
        char none = 0;
        // Answers when the last writing end closes: the parent's, for both at once.
        if (::read(start[0], &none, 1) != 0)
          return 2;
        return store_.synchronize() ? 0 : 1;
      });
    }
    close(start[0]);
    close(start[1]);
    for (const pid_t writer : writers)
      ASSERT_EQ(result_of_child(writer), 0) << "round " << round;
    ASSERT_THAT(written("writer 0"), Optional(text(value)));
    ASSERT_THAT(written("writer 1"), Optional(text(value)));
  }
}

TEST_F(PreferenceStoreTest, ThreadsShareAStore) {
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([this, i] {
      const std::string key = std::to_string(i);
      for (int round = 0; round < 20; ++round) {
        store_.setValue(key, text(std::to_string(round)));
        store_.synchronize();
        store_.value(key);
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  for (int i = 0; i < 4; ++i)
    EXPECT_THAT(written(std::to_string(i)), Optional(text("19")));
}

}  // namespace
}  // namespace cocoa
