// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "foundation/NSObject.h"

namespace cocoa {

/// A folder of resources together with the classes of the executable that they belong to.
///
/// Whoever loads the executable (a host's module, the stand-alone program) makes the bundle and keeps it for
/// as long as objects of its classes are used; the bundle keeps nothing but its path and the span, which must
/// outlive it. A bundle answers bundleForClass on the thread that made it, and on others inside a scope.
///
/// Resources are named, never reached by a path: a name with a '/' or ".." is refused as missing.
class NSBundle : public NSObject {
 public:
  static const Class class_;
  const Class& isa() const override { return class_; }

  /// `path` of the folder: absolute, UTF-8. The folder is looked at only when something of it is asked for.
  NSBundle(std::string_view path, std::span<const Class* const> classes);
  ~NSBundle() override;

  const std::string& bundlePath() const { return path_; }

  /// The executable's class of that name, or null. The platform's own are NSClassFromString's.
  const Class* classNamed(std::string_view name) const;
  /// The executable's class that the folder's Info.plist names as NSPrincipalClass. Null when there is no
  /// such file, key or class; a file that cannot be read is logged.
  const Class* principalClass() const;

  /// The path of the regular file `name`.`extension` (just `name` when `extension` is empty) in the folder.
  std::optional<std::string> pathForResource_ofType(std::string_view name, std::string_view extension) const;

  /// Loads the interface file `name`.xib: makes its objects, connects outlets and actions, and sends
  /// awakeFromNib to every object in the order of the document, to the owner last. Each call makes new
  /// objects.
  ///
  /// The top-level objects are autoreleased in the innermost pool: whoever wants them beyond it retains them;
  /// all others are owned by the objects around them. `owner` stands for the File's Owner and may be null
  /// when the file does not connect it. Its outlets do not own (unless its class says so).
  ///
  /// False when anything in the file is wrong: a log line names file, element and cause, whatever was made is
  /// released, outlets of the owner that had been set are null, and nothing was woken.
  bool loadNibNamed_owner(std::string_view name, NSObject* owner) const;

  /// The bundle that lists the class: of the scopes on this thread the innermost one's, else of those made on
  /// this thread the last. Null when there is none. Not retained for the caller.
  static NSBundle* bundleForClass(const Class& listed);

 private:
  bool lists(const Class& wanted) const;
  std::string path_;
  std::span<const Class* const> classes_;
};

/// While it lives, a bundle answers bundleForClass on this thread before others do. A host opens a scope
/// around what it does with the objects of one editor, on whatever thread that happens, one at a time. They
/// nest; null changes nothing. The bundle must outlive it.
class NSBundleScope {
 public:
  explicit NSBundleScope(NSBundle* bundle);
  ~NSBundleScope();
  NSBundleScope(const NSBundleScope&) = delete;
  NSBundleScope& operator=(const NSBundleScope&) = delete;

 private:
  friend class NSBundle;
  NSBundle* const bundle_;
  const NSBundleScope* const outer_;
};

}  // namespace cocoa
