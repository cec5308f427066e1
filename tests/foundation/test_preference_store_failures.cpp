// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <csignal>

#include "foundation/private/preference_store.h"
#include "manual_clock.h"
#include "property_list_values.h"
#include "store_test_support.h"

namespace cocoa {
namespace {

using namespace store_tests;
using testing::AllOf;
using testing::HasSubstr;
using testing::Optional;

constexpr std::chrono::milliseconds kNoPatience(0);

auto count_of(const std::string& text, char wanted) {
  return std::count(text.begin(), text.end(), wanted);
}

class PreferenceStoreFailures : public testing::Test {
 protected:
  /// With something in the file's place that is no store: reads find nothing, the next writing keeps it
  /// aside.
  void expect_kept_aside(const char* cause) {
    Logged logged;
    EXPECT_FALSE(store_.value("a"));
    EXPECT_THAT(logged.text(), AllOf(HasSubstr(file_.string()), HasSubstr(cause)));
    EXPECT_TRUE(std::filesystem::exists(file_)) << "reading alone moves nothing";
    store_.setValue("a", text("1"));
    EXPECT_TRUE(store_.synchronize());
    EXPECT_TRUE(std::filesystem::exists(aside_));
    EXPECT_THAT(logged.text(), HasSubstr(aside_.string())) << "where it is now";
    EXPECT_THAT(written(), Optional(text("1")));
  }
  /// With a place that cannot be written: nothing is lost, and what is set can be read.
  static void expect_stays_in_memory(const std::filesystem::path& file, const char* cause) {
    Logged logged;
    PreferenceStore store([&] { return file; });
    store.setValue("a", text("1"));
    EXPECT_FALSE(store.synchronize());
    EXPECT_THAT(logged.text(), AllOf(HasSubstr(file.string()), HasSubstr(cause)));
    EXPECT_THAT(store.value("a"), Optional(text("1")));
    EXPECT_FALSE(store.synchronize()) << "the change is still to be written";
  }
  std::optional<PropertyListValue> written() const {
    const auto list = PropertyList::fromXML(contents_of(file_));
    return list ? list->value("a") : std::nullopt;
  }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "store.plist";
  std::filesystem::path aside_ = folder_ / "store.plist.damaged";
  PreferenceStore store_{[this] { return file_; }};
};

TEST_F(PreferenceStoreFailures, DamagedFileIsKeptAside) {
  put(file_, "<plist><dict><key>a</key>");
  expect_kept_aside("cannot be read");
  EXPECT_EQ(contents_of(aside_), "<plist><dict><key>a</key>");
}

TEST_F(PreferenceStoreFailures, AFileThatIsNotWhollyAPropertyListIsKeptAside) {
  const char* const damages[] = {"<key>a&b</key><true/>", "<key>a</key><string>\x01</string>",
                                 "<key>a</key><string x='1' x='2'>b</string>", "<key>a</key><str\xC3ing/>",
                                 "<key>a</key><string>\xFF</string>"};
  for (const char* damage : damages) {
    put(file_, plist(damage));
    expect_kept_aside("cannot be read");
    EXPECT_EQ(contents_of(aside_), plist(damage));
    std::filesystem::remove(aside_);
    store_.synchronize();
  }
  put(file_, plist("<key>a</key><true/>") + "and more");
  expect_kept_aside("cannot be read");
}

TEST_F(PreferenceStoreFailures, EmptyFileIsKeptAside) {
  put(file_, "");
  expect_kept_aside("cannot be read");
}

TEST_F(PreferenceStoreFailures, OlderKeptAsideFilesStay) {
  put(aside_, "first");
  put(folder_ / "store.plist.damaged.2", "second");
  put(file_, "third");
  expect_kept_aside("cannot be read");
  EXPECT_EQ(contents_of(aside_), "first");
  EXPECT_EQ(contents_of(folder_ / "store.plist.damaged.2"), "second");
  EXPECT_EQ(contents_of(folder_ / "store.plist.damaged.3"), "third");
}

TEST_F(PreferenceStoreFailures, DamagedFileStaysWhileNothingIsWritten) {
  put(file_, "damaged");
  const Logged logged;
  EXPECT_FALSE(store_.value("a"));
  EXPECT_TRUE(store_.synchronize());
  EXPECT_EQ(contents_of(file_), "damaged");
}

TEST_F(PreferenceStoreFailures, TooLargeAFileIsNotRead) {
  put(file_,
      plist("<key>a</key><string>" + std::string(PreferenceStore::kMaximumFileSize, 'x') + "</string>"));
  expect_kept_aside("too large");
}

TEST_F(PreferenceStoreFailures, TooLargeAValueIsNotWritten) {
  put(file_, plist("<key>a</key><string>old</string>"));
  Logged logged;
  store_.setValue("a", std::vector<uint8_t>(PreferenceStore::kMaximumFileSize));
  EXPECT_FALSE(store_.synchronize());
  EXPECT_THAT(logged.text(), HasSubstr("too large"));
  EXPECT_THAT(written(), Optional(text("old")));
}

TEST_F(PreferenceStoreFailures, FolderInTheFilesPlace) {
  std::filesystem::create_directory(file_);
  expect_kept_aside("not a regular file");
}

TEST_F(PreferenceStoreFailures, PipeInTheFilesPlaceDoesNotBlock) {
  ASSERT_EQ(mkfifo(file_.c_str(), 0600), 0);
  expect_kept_aside("not a regular file");
}

TEST_F(PreferenceStoreFailures, SocketInTheFilesPlace) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(file_.string().size(), sizeof address.sun_path);
  file_.string().copy(address.sun_path, sizeof address.sun_path - 1);
  const int bound = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(bound, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  expect_kept_aside("cannot be read");
  close(bound);
}

TEST_F(PreferenceStoreFailures, LinkToItselfInTheFilesPlace) {
  std::filesystem::create_symlink(file_, file_);
  Logged logged;
  EXPECT_FALSE(store_.value("a"));
  EXPECT_THAT(logged.text(), HasSubstr("cannot be read"));
  store_.setValue("a", text("1"));
  EXPECT_TRUE(store_.synchronize());
  EXPECT_TRUE(std::filesystem::is_symlink(aside_));
  EXPECT_THAT(written(), Optional(text("1")));
}

TEST_F(PreferenceStoreFailures, FileInAFoldersPlace) {
  put(folder_ / "taken", "by a file");
  expect_stays_in_memory(folder_ / "taken" / "store.plist", "cannot be written");
  expect_stays_in_memory(folder_ / "taken" / "below" / "store.plist", "cannot be written");
  EXPECT_EQ(contents_of(folder_ / "taken"), "by a file");
}

TEST_F(PreferenceStoreFailures, FolderThatNobodyCanWriteTo) {
  expect_stays_in_memory("/proc/self/ondex/store.plist", "cannot be written");
  expect_stays_in_memory("/proc/store.plist", "cannot be written");
}

TEST_F(PreferenceStoreFailures, FullDiskLeavesTheOldFileAndTheChangePending) {
  put(file_, plist("<key>a</key><string>old</string>"));
  const std::string before = contents_of(file_);
  const int result = result_of_child(start_child([&] {
    const Logged logged;
    rlimit unlimited{};
    getrlimit(RLIMIT_FSIZE, &unlimited);
    const rlimit full = {.rlim_cur = 64, .rlim_max = unlimited.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);  // NOLINT(bugprone-signal-handler): none is installed
    setrlimit(RLIMIT_FSIZE, &full);
    store_.setValue("a", text("new"));
    if (store_.synchronize() || logged.text().find(file_.string()) == std::string::npos)
      return 1;
    if (contents_of(file_) != before || count_of_files(folder_.path()) != 2)
      return 2;
    if (store_.value("a") != text("new"))
      return 3;
    setrlimit(RLIMIT_FSIZE, &unlimited);
    return store_.synchronize() ? 0 : 4;
  }));
  EXPECT_EQ(result, 0);
  EXPECT_THAT(written(), Optional(text("new")));
}

TEST_F(PreferenceStoreFailures, OutOfDescriptorsDoesNotTakeASoundFileForADamagedOne) {
  put(file_, plist("<key>a</key><string>old</string><key>b</key><true/>"));
  const int result = result_of_child(start_child([&] {
    const Logged logged;
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    // To look at an object's class for the first time, a sanitizer wants a descriptor itself.
    store_.setValue("a", text("old"));
    store_.synchronize();
    store_.setValue("a", text("new"));
    const rlimit none = {.rlim_cur = 0, .rlim_max = before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &none);
    const bool written_without = store_.synchronize();
    setrlimit(RLIMIT_NOFILE, &before);
    if (written_without || std::filesystem::exists(aside_))
      return 1;
    return store_.synchronize() ? 0 : 2;
  }));
  EXPECT_EQ(result, 0);
  EXPECT_THAT(written(), Optional(text("new")));
  EXPECT_THAT(contents_of(file_), HasSubstr("<true />"));
}

/// Another process, as far as the lock can tell, that is writing.
class LockHolder {
 public:
  explicit LockHolder(const std::filesystem::path& file)
      : descriptor_(open((file.string() + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    EXPECT_EQ(flock(descriptor_, LOCK_EX), 0);
  }
  ~LockHolder() { close(descriptor_); }
  LockHolder(const LockHolder&) = delete;
  LockHolder& operator=(const LockHolder&) = delete;

 private:
  int descriptor_;
};

TEST_F(PreferenceStoreFailures, AHolderOfTheLockThatHangsDoesNotStopUs) {
  const LockHolder holder(file_);
  const Logged logged;
  store_.setValue("a", text("1"));
  EXPECT_TRUE(store_.synchronize());
  EXPECT_THAT(logged.text(), AllOf(HasSubstr(".lock"), HasSubstr("going on without")));
  EXPECT_THAT(written(), Optional(text("1")));
}

TEST_F(PreferenceStoreFailures, WithoutPatienceAHolderOfTheLockIsLeftAlone) {
  const ondex::test::ManualClock clock;
  PreferenceStore store([this] { return file_; }, clock);
  store.setValue("a", text("1"));
  const Logged logged;
  {
    const LockHolder holder(file_);
    for (int tries = 0; tries < 3; ++tries)
      EXPECT_FALSE(store.synchronize(kNoPatience));
    EXPECT_FALSE(std::filesystem::exists(file_));
    EXPECT_THAT(store.value("a"), Optional(text("1")));
  }
  EXPECT_TRUE(store.synchronize(kNoPatience));
  EXPECT_THAT(written(), Optional(text("1")));
  EXPECT_EQ(count_of(logged.text(), '\n'), 1) << "told once: " << logged.text();
}

TEST_F(PreferenceStoreFailures, AHolderThatIsMetForThreeSecondsHangs) {
  ondex::test::ManualClock clock(100);
  PreferenceStore store([this] { return file_; }, clock);
  store.setValue("a", text("1"));
  const LockHolder holder(file_);
  const Logged logged;
  EXPECT_FALSE(store.synchronize(kNoPatience));
  for (int tries = 0; tries < 2; ++tries) {
    clock.advance(1.4);
    EXPECT_FALSE(store.synchronize(kNoPatience));
  }
  clock.advance(0.4);
  EXPECT_TRUE(store.synchronize(kNoPatience));
  EXPECT_THAT(logged.text(), HasSubstr("going on without"));
  EXPECT_THAT(written(), Optional(text("1")));
}

TEST_F(PreferenceStoreFailures, AHolderThatIsMetAgainMuchLaterMayBeAnother) {
  ondex::test::ManualClock clock(100);
  PreferenceStore store([this] { return file_; }, clock);
  store.setValue("a", text("1"));
  const LockHolder holder(file_);
  const Logged logged;
  EXPECT_FALSE(store.synchronize(kNoPatience));
  clock.advance(60);
  EXPECT_FALSE(store.synchronize(kNoPatience));
  clock.advance(3);
  EXPECT_TRUE(store.synchronize(kNoPatience));
}

TEST_F(PreferenceStoreFailures, ALockThatCannotBeMadeDoesNotStopUs) {
  std::filesystem::create_directory(file_.string() + ".lock");
  const Logged logged;
  store_.setValue("a", text("1"));
  EXPECT_TRUE(store_.synchronize());
  EXPECT_THAT(logged.text(), HasSubstr("going on without"));
}

}  // namespace
}  // namespace cocoa
