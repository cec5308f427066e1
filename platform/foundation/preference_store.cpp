#include "foundation/preference_store.h"

#include <utility>

#include "foundation/NSLog.h"
#include "foundation/small_file.h"

namespace cocoa {

namespace {

void log_no_place() {
  NSLog("Preferences: no folder to keep them in; they stay in memory.");
}

bool log_not_written(const std::filesystem::path& file, const std::string& cause) {
  NSLog("Preferences: %s: cannot be written: %s.", file.c_str(), cause.c_str());
  return false;
}

}  // namespace

PreferenceStore::PreferenceStore(std::function<std::filesystem::path()> locate)
    : locate_(std::move(locate)) {}

std::optional<PropertyListValue> PreferenceStore::value(std::string_view key) {
  const std::lock_guard guard(mutex_);
  if (const auto changed = changed_.find(key); changed != changed_.end())
    return changed->second;
  return loaded().value(key);
}

void PreferenceStore::setValue(std::string_view key, std::optional<PropertyListValue> value) {
  const std::lock_guard guard(mutex_);
  const auto changed = changed_.find(key);
  if (changed != changed_.end()) {
    changed->second = std::move(value);
    return;
  }
  const bool is_same = value ? loaded().value(key) == value : !loaded().contains(key);
  if (!is_same)
    changed_.emplace(key, std::move(value));
}

bool PreferenceStore::synchronize() {
  const std::lock_guard guard(mutex_);
  if (changed_.empty()) {
    loaded_.reset();
    return true;
  }
  const std::filesystem::path file = locate_();
  if (file.empty()) {
    log_no_place();
    return false;
  }
  return write(file);
}

PreferenceStore::Loaded PreferenceStore::load(const std::filesystem::path& file) {
  const SmallFile read = read_small_file(file, kMaximumFileSize);
  std::string cause = read.cause;
  Loaded loaded;
  if (read.state == SmallFile::State::kAbsent)
    return loaded;
  if (read.state == SmallFile::State::kRead) {
    if (auto list = PropertyList::fromBytes(read.bytes, cause)) {
      loaded.list = std::move(*list);
      return loaded;
    }
  }
  loaded.is_unavailable = read.state == SmallFile::State::kUnavailable;
  loaded.is_damaged = !loaded.is_unavailable;
  NSLog("Preferences: %s: cannot be read: %s.", file.c_str(), cause.c_str());
  return loaded;
}

const PropertyList& PreferenceStore::loaded() {
  if (!loaded_) {
    const std::filesystem::path file = locate_();
    if (file.empty())
      log_no_place();
    loaded_ = file.empty() ? PropertyList() : load(file).list;
  }
  return *loaded_;
}

bool PreferenceStore::write(const std::filesystem::path& file) {
  if (const std::error_code error = make_private_folder(file.parent_path()))
    return log_not_written(file, error.message());
  // From reading to renaming: what another process writes in between would be lost.
  const FileLock lock(file.string() + ".lock");
  Loaded merged = load(file);
  if (merged.is_unavailable)
    return log_not_written(file, "it may hold what cannot be read at present");
  for (const auto& [key, value] : changed_) {
    if (value) {
      merged.list.setValue(key, *value);
    } else {
      merged.list.removeValue(key);
    }
  }
  const std::string xml = merged.list.xml();
  if (xml.size() > kMaximumFileSize)
    return log_not_written(file, "too large");
  if (merged.is_damaged) {
    if (const std::error_code error = keep_aside(file))
      return log_not_written(file, "what is there cannot be kept aside: " + error.message());
  }
  if (const std::error_code error = replace_file(file, xml))
    return log_not_written(file, error.message());
  loaded_ = std::move(merged.list);
  changed_.clear();
  return true;
}

}  // namespace cocoa
