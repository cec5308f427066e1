// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <csignal>
#include <random>

#include "foundation/private/preference_store.h"
#include "property_list_values.h"
#include "store_test_support.h"

/// What others leave in the store's folder or put in the file's place: killed writers, and users with links.

namespace cocoa {
namespace {

using namespace store_tests;
using testing::HasSubstr;
using testing::Optional;

class PreferenceStoreAmongOthers : public testing::Test {
 protected:
  bool write(const char* value) {
    store_.setValue("a", text(value));
    return store_.synchronize();
  }
  static std::optional<PropertyListValue> written(const std::filesystem::path& file) {
    const auto list = PropertyList::fromXML(contents_of(file));
    return list ? list->value("a") : std::nullopt;
  }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "store" / "store.plist";
  PreferenceStore store_{[this] { return file_; }};
};

// Killed writers

TEST_F(PreferenceStoreAmongOthers, WritersThatAreKilledAtAnyMomentLeaveNothingBehind) {
  ASSERT_TRUE(write("first"));
  constexpr unsigned kSeed = 34;
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  std::mt19937 random(kSeed);
  int left_behind = 0;
  for (int round = 0; round < 150; ++round) {
    const pid_t child = start_child([this] {
      for (;;)
        write("1") && write("2");
      return 0;
    });
    // Any moment will do.
    const timespec moment = {.tv_sec = 0, .tv_nsec = static_cast<long>(random() % 4'000'000)};
    nanosleep(&moment, nullptr);
    kill(child, SIGKILL);
    result_of_child(child);
    left_behind += count_of_files(file_.parent_path()) > 2 ? 1 : 0;
  }
  EXPECT_GT(left_behind, 0) << "none was killed in the middle of a writing";
  EXPECT_TRUE(write("last"));
  EXPECT_EQ(count_of_files(file_.parent_path()), 2U) << "the store and its lock";
  EXPECT_THAT(written(file_), Optional(text("last")));
}

/// The name that a writer's temporary file has: the one that appears while one is stopped in mid-writing.
std::filesystem::path temporary_of(const std::filesystem::path& file) {
  return file.string() + ".writing-AbC123";
}

TEST_F(PreferenceStoreAmongOthers, ATemporaryFileThatIsBeingWrittenStays) {
  ASSERT_TRUE(write("1"));
  put(temporary_of(file_), "half");
  const int writer = open(temporary_of(file_).c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(writer, LOCK_EX), 0);
  EXPECT_TRUE(write("2"));
  EXPECT_EQ(contents_of(temporary_of(file_)), "half");
  close(writer);
  EXPECT_TRUE(write("3"));
  EXPECT_FALSE(std::filesystem::exists(temporary_of(file_)));
}

TEST_F(PreferenceStoreAmongOthers, OnlyTemporaryFilesOfThisStoreAreRemoved) {
  ASSERT_TRUE(write("1"));
  const std::filesystem::path folder = file_.parent_path();
  const char* const others[] = {"store.plist.backup",          "store.plist.writing-AbC12",
                                "store.plist.writing-AbC1234", "store.plist.writing-AbC12~",
                                "other.plist.writing-AbC123",  "xstore.plist.writing-AbC123",
                                "store.plist.241122",          "store.plist.damaged"};
  for (const char* name : others)
    put(folder / name, "others'");
  std::filesystem::create_directory(folder / "store.plist.writing-folder");
  std::filesystem::create_symlink("store.plist.backup", folder / "store.plist.writing-linked");
  ASSERT_EQ(mkfifo((folder / "store.plist.writing-pipe00").c_str(), 0600), 0);
  const size_t count = count_of_files(folder);
  EXPECT_TRUE(write("2"));
  EXPECT_EQ(count_of_files(folder), count);
}

TEST_F(PreferenceStoreAmongOthers, WithoutTheLockNothingIsRemoved) {
  ASSERT_TRUE(write("1"));
  put(temporary_of(file_), "left behind");
  std::filesystem::remove(file_.string() + ".lock");
  std::filesystem::create_directory(file_.string() + ".lock");
  const Logged logged;
  EXPECT_TRUE(write("2"));
  EXPECT_TRUE(std::filesystem::exists(temporary_of(file_)));
}

// Links

class PreferenceStoreLinks : public PreferenceStoreAmongOthers {
 protected:
  PreferenceStoreLinks() {
    std::filesystem::create_directories(file_.parent_path());
    std::filesystem::create_directories(target_.parent_path());
  }
  std::filesystem::path target_ = folder_ / "elsewhere" / "mine.plist";
};

TEST_F(PreferenceStoreLinks, AreFollowed) {
  put(target_, plist("<key>b</key><true/>"));
  std::filesystem::create_symlink(target_, file_);
  EXPECT_TRUE(write("1"));
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_FALSE(std::filesystem::is_symlink(target_));
  EXPECT_THAT(written(target_), Optional(text("1")));
  EXPECT_THAT(contents_of(target_), HasSubstr("<true />"));
  EXPECT_EQ(count_of_files(target_.parent_path()), 1U) << "nothing but the store itself lies there";
  put(temporary_of(target_), "left behind");
  EXPECT_TRUE(write("2"));
  EXPECT_EQ(count_of_files(target_.parent_path()), 1U);
}

TEST_F(PreferenceStoreLinks, AreFollowedFromLinkToLinkAndFromTheirOwnFolders) {
  std::filesystem::create_symlink("../elsewhere/link", file_);
  std::filesystem::create_symlink("mine.plist", target_.parent_path() / "link");
  EXPECT_TRUE(write("1")) << "nothing is there yet";
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_TRUE(std::filesystem::is_symlink(target_.parent_path() / "link"));
  EXPECT_THAT(written(target_), Optional(text("1")));
}

TEST_F(PreferenceStoreLinks, ADamagedTargetIsKeptBesideIt) {
  put(target_, "damaged");
  std::filesystem::create_symlink(target_, file_);
  const Logged logged;
  EXPECT_TRUE(write("1"));
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_EQ(contents_of(target_.string() + ".damaged"), "damaged");
  EXPECT_THAT(written(target_), Optional(text("1")));
}

TEST_F(PreferenceStoreLinks, ToAFolderThatIsNotThereKeepTheChange) {
  std::filesystem::create_symlink(folder_ / "not mounted" / "mine.plist", file_);
  const Logged logged;
  EXPECT_FALSE(write("1"));
  EXPECT_THAT(logged.text(), HasSubstr("cannot be written"));
  EXPECT_FALSE(std::filesystem::exists(folder_ / "not mounted"));
  std::filesystem::create_directory(folder_ / "not mounted");
  EXPECT_TRUE(store_.synchronize());
  EXPECT_THAT(written(folder_ / "not mounted" / "mine.plist"), Optional(text("1")));
}

TEST_F(PreferenceStoreLinks, ToWhatIsNoFileLeaveItAlone) {
  ASSERT_EQ(mkfifo(target_.c_str(), 0600), 0);
  std::filesystem::create_symlink(target_, file_);
  const Logged logged;
  EXPECT_FALSE(write("1"));
  EXPECT_THAT(logged.text(), HasSubstr("no regular file"));
  EXPECT_TRUE(std::filesystem::is_fifo(target_));
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_THAT(store_.value("a"), Optional(text("1")));
}

}  // namespace
}  // namespace cocoa
