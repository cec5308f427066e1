// SPDX-License-Identifier: MIT
#include "foundation/private/preference_store.h"

#include <utility>

#include "foundation/NSLog.h"
#include "foundation/private/small_file.h"

namespace cocoa {

namespace {

void log_not_read(const std::filesystem::path& file, const std::string& cause) {
  NSLog("Preferences: %s: cannot be read: %s.", file.c_str(), cause.c_str());
}

}  // namespace

PreferenceStore::PreferenceStore(std::function<std::filesystem::path()> locate, const Clock& clock)
    : locate_(std::move(locate)), clock_(clock) {}

std::optional<PropertyListValue> PreferenceStore::value(std::string_view key) {
  const std::lock_guard guard(mutex_);
  if (const auto set = set_.find(key); set != set_.end())
    return set->second;
  return loaded().value(key);
}

void PreferenceStore::setValue(std::string_view key, std::optional<PropertyListValue> value) {
  const std::lock_guard guard(mutex_);
  set_.insert_or_assign(std::string(key), std::move(value));
}

void PreferenceStore::forgetUnwritten(std::string_view key) {
  const std::lock_guard guard(mutex_);
  if (const auto set = set_.find(key); set != set_.end())
    set_.erase(set);
}

bool PreferenceStore::hasUnwritten() {
  const std::lock_guard guard(mutex_);
  return !set_.empty();
}

bool PreferenceStore::synchronize(std::chrono::milliseconds patience) {
  const std::lock_guard guard(mutex_);
  if (set_.empty()) {
    loaded_.reset();
    return true;
  }
  const std::filesystem::path file = locate_();
  if (file.empty())
    return complain(file, "no folder to keep them in; they stay in memory");
  if (!write(file, patience))
    return false;
  set_.clear();
  complaints_.clear();
  return true;
}

PreferenceStore::Loaded PreferenceStore::load(const std::filesystem::path& file) {
  SmallFile read = read_small_file(file, kMaximumFileSize);
  Loaded loaded;
  if (read.state == SmallFile::State::kAbsent)
    return loaded;
  if (read.state == SmallFile::State::kRead) {
    Result<PropertyList> list = PropertyList::fromXML(read.bytes);
    if (list) {
      loaded.list = std::move(*list);
      return loaded;
    }
    read.cause = list.cause();
  }
  loaded.is_unavailable = read.state == SmallFile::State::kUnavailable;
  loaded.is_damaged = !loaded.is_unavailable;
  loaded.cause = std::move(read.cause);
  return loaded;
}

const PropertyList& PreferenceStore::loaded() {
  if (!loaded_) {
    const std::filesystem::path file = locate_();
    Loaded read;
    if (file.empty()) {
      NSLog("Preferences: no folder to keep them in; they stay in memory.");
    } else {
      read = load(file);
    }
    if (!read.cause.empty())
      log_not_read(file, read.cause);
    loaded_ = std::move(read.list);
  }
  return *loaded_;
}

/// False. A cause that lasts is told once, however often writing is tried.
bool PreferenceStore::complain(const std::filesystem::path& file, const std::string& cause) {
  if (!complaints_.insert(file.string() + cause).second)
    return false;
  if (file.empty()) {
    NSLog("Preferences: %s.", cause.c_str());
  } else {
    NSLog("Preferences: %s: cannot be written: %s.", file.c_str(), cause.c_str());
  }
  return false;
}

/// Whether the file may be written: the lock is held, or cannot be had.
bool PreferenceStore::mayWrite(const FileLock& lock, const std::filesystem::path& file, double tried_since) {
  if (!lock.isHeldByAnother()) {
    locked_since_.reset();
    if (!lock.isHeld()) {
      NSLog("Preferences: %s.lock: cannot be locked, going on without: %s.", file.c_str(),
            lock.cause().c_str());
    }
    return true;
  }
  constexpr double kLongest = std::chrono::duration<double>(kLongestLock).count();
  // After a longer time without a try it may well be another writing that is in the way.
  if (!locked_since_ || tried_since - last_locked_ > kLongest)
    locked_since_ = tried_since;
  last_locked_ = clock_.now();
  // The last wait ends before it would be too long.
  constexpr double kMargin = 0.01;
  if (last_locked_ - *locked_since_ < kLongest - kMargin)
    return complain(file, "another process is writing; it is tried again");
  NSLog("Preferences: %s.lock: another process keeps it, going on without.", file.c_str());
  return true;
}

bool PreferenceStore::write(const std::filesystem::path& file, std::chrono::milliseconds patience) {
  if (const Result<void> made = make_private_folder(file.parent_path()); !made)
    return complain(file, made.cause());
  const double tried_since = clock_.now();
  // From reading to renaming: what another process writes in between would be lost. The lock keeps the link's
  // name, by which all know the store; what it leads to may lie where only the store itself belongs.
  const FileLock lock(file.string() + ".lock", patience);
  if (!mayWrite(lock, file, tried_since))
    return false;
  const std::filesystem::path target = followed_links(file);
  if (lock.isHeld())
    remove_abandoned_temporaries(target);
  Loaded merged = load(target);
  if (merged.is_unavailable)
    return complain(file, "it may hold what cannot be read at present: " + merged.cause);
  // Others' things are no store that was damaged: /dev/null is a way to keep nothing.
  std::error_code ignored;
  if (merged.is_damaged && target != file && !std::filesystem::is_regular_file(target, ignored))
    return complain(file, "a link to what is no regular file");
  const bool is_changed = merge(merged);
  if (is_changed && !put(target, merged))
    return false;
  loaded_ = std::move(merged.list);
  return true;
}

/// Brings what was set into the list; whether that changes what the file is to hold.
bool PreferenceStore::merge(Loaded& loaded) const {
  bool is_changed = loaded.is_damaged;
  for (const auto& [key, value] : set_) {
    if (value ? loaded.list.value(key) == value : !loaded.list.contains(key))
      continue;
    is_changed = true;
    if (value) {
      loaded.list.setValue(key, *value);
    } else {
      loaded.list.removeValue(key);
    }
  }
  return is_changed;
}

bool PreferenceStore::put(const std::filesystem::path& file, const Loaded& merged) {
  const std::string xml = merged.list.xml();
  if (xml.size() > kMaximumFileSize)
    return complain(file, "too large");
  if (merged.is_damaged) {
    const Result<std::filesystem::path> kept = keep_aside(file);
    if (!kept)
      return complain(file, "what is there cannot be kept aside: " + kept.cause());
    NSLog("Preferences: %s: what cannot be read is kept as %s: %s.", file.c_str(), kept->c_str(),
          merged.cause.c_str());
  }
  if (const Result<void> replaced = replace_file(file, xml); !replaced)
    return complain(file, replaced.cause());
  return true;
}

}  // namespace cocoa
