// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "foundation/Clock.h"
#include "foundation/private/property_list.h"

namespace cocoa {

class FileLock;

/// Values by key in one file, which other processes read and write too.
///
/// Setting changes memory only; synchronize() carries the keys that were set, and no others, into what the
/// file then holds. A file that cannot wholly be read counts as empty and, with a line in the log, is kept
/// aside when the store is next written. A symbolic link in the file's place is followed. Any thread; calls
/// wait for each other.
class PreferenceStore {
 public:
  /// Larger files are not read nor written.
  static constexpr size_t kMaximumFileSize = size_t{1} << 20U;
  /// A process that keeps the file locked for so long hangs, and must not make us lose what was set: then it
  /// is written all the same, with a line in the log. Longer than a busy disk takes for a few writings.
  static constexpr std::chrono::milliseconds kLongestLock = std::chrono::seconds(3);

  /// `locate` answers the file and is asked at each reading and writing; empty when there is no place for
  /// one: then values stay in memory. The clock tells how long the file has been locked.
  explicit PreferenceStore(std::function<std::filesystem::path()> locate,
                           const Clock& clock = Clock::system());

  /// Nothing when there is none.
  std::optional<PropertyListValue> value(std::string_view key);
  /// Nothing removes the key. Values must not be opaque. What is set is to be written also when it equals
  /// what was read: others may have written something else since.
  void setValue(std::string_view key, std::optional<PropertyListValue> value);
  /// Takes back what was set and has not been written.
  void forgetUnwritten(std::string_view key);
  bool hasUnwritten();
  /// Writes what was set, unless the file holds it already. False when it cannot, and it stays to be written:
  /// with a line in the log, one for each cause until a writing succeeds. Waits for another process that is
  /// writing, but no longer than `patience`; with less than kLongestLock, the caller tries again later.
  /// With nothing set, only forgets what was read, so that the next reading is of the file.
  bool synchronize(std::chrono::milliseconds patience = kLongestLock);

 private:
  struct Loaded {
    PropertyList list;
    /// Something stands in the file's place that is no store.
    bool is_damaged = false;
    bool is_unavailable = false;
    /// Why it was not read.
    std::string cause;
  };
  static Loaded load(const std::filesystem::path& file);
  const PropertyList& loaded();
  bool write(const std::filesystem::path& file, std::chrono::milliseconds patience);
  bool mayWrite(const FileLock& lock, const std::filesystem::path& file, double tried_since);
  bool merge(Loaded& loaded) const;
  bool put(const std::filesystem::path& file, const Loaded& merged);
  bool complain(const std::filesystem::path& file, const std::string& cause);

  const std::function<std::filesystem::path()> locate_;
  const Clock& clock_;
  std::mutex mutex_;
  std::optional<PropertyList> loaded_;
  std::map<std::string, std::optional<PropertyListValue>, std::less<>> set_;
  /// The first and the last time at which the file has been found locked, in seconds of the clock.
  std::optional<double> locked_since_;
  double last_locked_ = 0;
  std::set<std::string> complaints_;
};

}  // namespace cocoa
