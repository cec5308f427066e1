// SPDX-License-Identifier: MIT
#include "foundation/NSBundle.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <thread>
#include <vector>

#include "foundation/NSClass.h"
#include "foundation/NSLog.h"
#include "foundation/private/InterfaceLoader.h"
#include "foundation/private/property_list.h"
#include "foundation/private/xml_file.h"

namespace cocoa {

const Class NSBundle::class_ = {.name = "NSBundle", .superclass = &NSObject::class_};

namespace {

struct LiveBundle {
  NSBundle* bundle;
  std::thread::id thread;
};

/// Bundles alive, oldest first.
struct LiveBundles {
  std::mutex mutex;
  std::vector<LiveBundle> bundles;
};

LiveBundles& live_bundles() {
  static LiveBundles bundles;
  return bundles;
}

thread_local const NSBundleScope* innermost_scope = nullptr;

bool is_resource_name(std::string_view name) {
  return !name.empty() && name.find('/') == name.npos && name.find("..") == name.npos &&
         name.find('\0') == name.npos;
}

void log_failure(std::string_view file, std::string_view cause) {
  NSLog("%s", one_line(std::string(file) + ": " + std::string(cause)).c_str());
}

}  // namespace

NSBundle::NSBundle(std::string_view path, std::span<const Class* const> classes)
    : path_(path), classes_(classes) {
  LiveBundles& live = live_bundles();
  const std::scoped_lock lock(live.mutex);
  live.bundles.push_back({this, std::this_thread::get_id()});
}

NSBundle::~NSBundle() {
  LiveBundles& live = live_bundles();
  const std::scoped_lock lock(live.mutex);
  std::erase_if(live.bundles, [this](const LiveBundle& entry) { return entry.bundle == this; });
}

NSBundleScope::NSBundleScope(NSBundle* bundle) : bundle_(bundle), outer_(innermost_scope) {
  innermost_scope = this;
}

NSBundleScope::~NSBundleScope() {
  innermost_scope = outer_;
}

bool NSBundle::lists(const Class& wanted) const {
  return std::ranges::find(classes_, &wanted) != classes_.end();
}

NSBundle* NSBundle::bundleForClass(const Class& listed) {
  for (const NSBundleScope* scope = innermost_scope; scope; scope = scope->outer_) {
    if (scope->bundle_ && scope->bundle_->lists(listed))
      return scope->bundle_;
  }
  LiveBundles& live = live_bundles();
  const std::scoped_lock lock(live.mutex);
  const auto lists_it = [&](const LiveBundle& entry) {
    return entry.thread == std::this_thread::get_id() && entry.bundle->lists(listed);
  };
  const auto found = std::find_if(live.bundles.rbegin(), live.bundles.rend(), lists_it);
  return found == live.bundles.rend() ? nullptr : found->bundle;
}

const Class* NSBundle::classNamed(std::string_view name) const {
  const auto found = std::ranges::find(classes_, name, [](const Class* known) { return known->name; });
  return found == classes_.end() ? nullptr : *found;
}

const Class* NSBundle::principalClass() const {
  const auto path = pathForResource_ofType("Info", "plist");
  if (!path)
    return nullptr;
  const Result<std::string> file = read_text_file(*path);
  const Result<PropertyList> list =
      file ? PropertyList::fromXML(*file) : Result<PropertyList>(file.failure());
  if (!list) {
    log_failure(*path, list.cause());
    return nullptr;
  }
  const std::optional<PropertyListValue> name = list->value("NSPrincipalClass");
  const auto* text = name ? std::get_if<std::string>(&*name) : nullptr;
  return text ? classNamed(*text) : nullptr;
}

std::optional<std::string> NSBundle::pathForResource_ofType(std::string_view name,
                                                            std::string_view extension) const {
  std::string file(name);
  if (!extension.empty())
    file.append(".").append(extension);
  if (!is_resource_name(name) || !is_resource_name(file) || !path_.starts_with('/'))
    return std::nullopt;
  std::string path = path_ + '/' + file;
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(path, ignored))
    return std::nullopt;
  return path;
}

bool NSBundle::loadNibNamed_owner(std::string_view name, NSObject* owner) const {
  const std::string path = path_ + '/' + std::string(name) + ".xib";
  if (!is_resource_name(name) || !path_.starts_with('/')) {
    log_failure(path, "is not the name of a resource");
    return false;
  }
  const Result<std::string> file = read_text_file(path);
  if (!file) {
    log_failure(path, file.cause());
    return false;
  }
  const ClassLookup classes = [this](std::string_view class_name) {
    const Class* own = classNamed(class_name);
    return own ? own : NSClassFromString(class_name);
  };
  return load_interface(path, *file, classes, owner);
}

}  // namespace cocoa
