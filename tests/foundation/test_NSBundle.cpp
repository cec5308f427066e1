// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "foundation/NSBundle.h"
#include "foundation/NSClass.h"
#include "stand_ins.h"
#include "temporary_folder.h"

namespace cocoa::stand_in {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::StartsWith;

/// A folder of resources of its own.
class NSBundleTest : public ::testing::Test {
 protected:
  NSBundleTest() { bundle_ = make<NSBundle>(folder_, classes()); }

  void write(const std::string& name, std::string_view text) const {
    std::ofstream(folder_ + '/' + name, std::ios::binary) << text;
  }

  ondex::test::TemporaryFolder temporary_;
  std::string folder_ = temporary_.path().string();
  Ref<NSBundle> bundle_;
};

TEST_F(NSBundleTest, KnowsTheClassesOfItsExecutableByName) {
  EXPECT_EQ(bundle_->classNamed("DemoDial"), &DemoDial::class_);
  EXPECT_EQ(bundle_->classNamed("DemoDail"), nullptr);
  EXPECT_EQ(bundle_->classNamed(""), nullptr);
}

TEST_F(NSBundleTest, FindsItsPrincipalClassInThePropertyList) {
  write("Info.plist", R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>
  <key>CFBundlePackageType</key> <string>BNDL</string>
  <key>LSUIElement</key> <true/>
  <key>NSPrincipalClass</key> <!-- the way in -->
  <string>DemoOwner</string>
</dict></plist>)");
  EXPECT_EQ(bundle_->principalClass(), &Owner::class_);
}

TEST_F(NSBundleTest, HasNoPrincipalClassWithoutAFileAKeyOrAClass) {
  const Log log;
  EXPECT_EQ(bundle_->principalClass(), nullptr);
  write("Info.plist", "<plist><dict><key>NSPrincipalClass</key><true/></dict></plist>");
  EXPECT_EQ(bundle_->principalClass(), nullptr);
  write("Info.plist", "<plist><dict><key>NSPrincipalClass</key><string>Nobody</string></dict></plist>");
  EXPECT_EQ(bundle_->principalClass(), nullptr);
  write("Info.plist", "<plist><dict><key>Other</key><string>DemoOwner</string></dict></plist>");
  EXPECT_EQ(bundle_->principalClass(), nullptr);
  EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(NSBundleTest, LogsAPropertyListThatIsBroken) {
  const Log log;
  write("Info.plist", "<plist>\n<dict>");
  EXPECT_EQ(bundle_->principalClass(), nullptr);
  write("Info.plist", "<plist><dict><key>NSPrincipalClass</key></dict></plist>");
  EXPECT_EQ(bundle_->principalClass(), nullptr);
  EXPECT_THAT(log.lines, ElementsAre(StartsWith(folder_ + "/Info.plist: line 2: "), EndsWith("do not pair")));
}

TEST_F(NSBundleTest, FindsRegularFilesOfItsFolderOnly) {
  write("Demo.xib", "");
  write("ReadMe", "");
  std::filesystem::create_directory(folder_ + "/Folder.xib");
  EXPECT_EQ(bundle_->pathForResource_ofType("Demo", "xib"), folder_ + "/Demo.xib");
  EXPECT_EQ(bundle_->pathForResource_ofType("ReadMe", ""), folder_ + "/ReadMe");
  EXPECT_EQ(bundle_->pathForResource_ofType("Other", "xib"), std::nullopt);
  EXPECT_EQ(bundle_->pathForResource_ofType("Folder", "xib"), std::nullopt);
}

TEST_F(NSBundleTest, RefusesNamesThatLeadElsewhere) {
  using namespace std::string_view_literals;
  write("Demo.xib", "");
  std::filesystem::create_directory(folder_ + "/sub");
  write("sub/Demo.xib", "");
  for (const std::string_view name : {"sub/Demo"sv, "../Demo"sv, "/Demo"sv, ".."sv, ""sv, "Demo\0"sv}) {
    EXPECT_EQ(bundle_->pathForResource_ofType(name, "xib"), std::nullopt) << name;
    const Log log;
    EXPECT_FALSE(bundle_->loadNibNamed_owner(name, nullptr)) << name;
    EXPECT_THAT(log.lines, ElementsAre(EndsWith("is not the name of a resource"))) << name;
  }
  EXPECT_EQ(bundle_->pathForResource_ofType("sub", "/Demo.xib"), std::nullopt);
  EXPECT_EQ(bundle_->pathForResource_ofType("Demo.", ".xib"), std::nullopt);
}

TEST_F(NSBundleTest, FindsNothingBelowAPathThatIsNotAbsolute) {
  const Log log;
  const auto relative = make<NSBundle>(".", classes());
  EXPECT_EQ(relative->pathForResource_ofType("CMakeCache", "txt"), std::nullopt);
  EXPECT_FALSE(relative->loadNibNamed_owner("Demo", nullptr));
  EXPECT_EQ(log.lines.size(), 1U);
}

TEST_F(NSBundleTest, LoadsAnInterfaceFileForItsOwner) {
  const NSAutoreleasePool pool;
  write("Demo.xib", demo_document);
  const auto owner = make<Owner>();
  ASSERT_TRUE(bundle_->loadNibNamed_owner("Demo", owner.get()));
  EXPECT_TRUE(owner->root);
}

TEST_F(NSBundleTest, LooksForClassesOfItsOwnBeforeThePlatforms) {
  const NSAutoreleasePool pool;
  static const Class platform_dial = {.name = "DemoDial", .superclass = &NSObject::class_};
  static const Class platform_probe = {.name = "PlatformProbe",
                                       .superclass = &NSObject::class_,
                                       .init = []() -> Ref<NSObject> { return make<Probe>(); }};
  const Class* const registered[] = {&platform_dial, &platform_probe};
  NSRegisterClasses(registered);
  write("Demo.xib", demo_document);
  write("Probe.xib", document(R"(<customObject id="1" customClass="PlatformProbe"/>)"));
  const auto owner = make<Owner>();
  EXPECT_TRUE(bundle_->loadNibNamed_owner("Demo", owner.get()));
  EXPECT_TRUE(bundle_->loadNibNamed_owner("Probe", nullptr));
}

TEST_F(NSBundleTest, LogsAnInterfaceFileThatIsMissingOrBroken) {
  const NSAutoreleasePool pool;
  const Log log;
  write("Broken.xib", document("<customView id=\"7\"/>"));
  EXPECT_FALSE(bundle_->loadNibNamed_owner("Missing", nullptr));
  EXPECT_FALSE(bundle_->loadNibNamed_owner("Broken", nullptr));
  EXPECT_THAT(log.lines, ElementsAre(folder_ + "/Missing.xib: cannot be read: No such file or directory",
                                     folder_ + "/Broken.xib: <customView id=\"7\">: has no frame"));
}

TEST_F(NSBundleTest, ReadsRegularFilesOfBoundedSizeOnly) {
  const Log log;
  std::filesystem::create_directory(folder_ + "/Folder.xib");
  ASSERT_EQ(::mkfifo((folder_ + "/Pipe.xib").c_str(), 0600), 0);
  write("Large.xib", std::string((size_t{4} << 20) + 1, ' '));
  EXPECT_FALSE(bundle_->loadNibNamed_owner("Folder", nullptr));
  EXPECT_FALSE(bundle_->loadNibNamed_owner("Pipe", nullptr));
  EXPECT_FALSE(bundle_->loadNibNamed_owner("Large", nullptr));
  EXPECT_THAT(log.lines, ElementsAre(folder_ + "/Folder.xib: cannot be read: not a regular file",
                                     folder_ + "/Pipe.xib: cannot be read: not a regular file",
                                     folder_ + "/Large.xib: cannot be read: too large"));
}

TEST_F(NSBundleTest, IsFoundByItsClassesUntilItGoes) {
  EXPECT_EQ(NSBundle::bundleForClass(DemoDial::class_), bundle_.get());
  EXPECT_EQ(NSBundle::bundleForClass(NSObject::class_), nullptr);
  bundle_ = nullptr;
  EXPECT_EQ(NSBundle::bundleForClass(DemoDial::class_), nullptr);
}

TEST_F(NSBundleTest, OfSeveralWithOneClassTheLastMadeIsFound) {
  auto second = make<NSBundle>(folder_, classes());
  const Class* const few[] = {&DemoDial::class_};
  const auto third = make<NSBundle>(folder_, few);
  EXPECT_EQ(NSBundle::bundleForClass(DemoDial::class_), third.get());
  EXPECT_EQ(NSBundle::bundleForClass(DemoRoot::class_), second.get());
  second = nullptr;
  EXPECT_EQ(NSBundle::bundleForClass(DemoRoot::class_), bundle_.get());
}

TEST_F(NSBundleTest, IsFoundOnItsOwnThreadOnly) {
  const NSBundle* found_elsewhere = bundle_.get();
  std::thread([&] { found_elsewhere = NSBundle::bundleForClass(DemoDial::class_); }).join();
  EXPECT_EQ(found_elsewhere, nullptr);
}

TEST_F(NSBundleTest, IsFoundOnAnyThreadInsideAScope) {
  const auto later = make<NSBundle>(folder_, classes());
  const NSBundle* found = nullptr;
  const NSBundle* found_inside = nullptr;
  const NSBundle* found_after = bundle_.get();
  std::thread([&] {
    {
      const NSBundleScope outer(bundle_.get());
      const NSBundleScope none(nullptr);
      found = NSBundle::bundleForClass(DemoDial::class_);
      const NSBundleScope inner(later.get());
      found_inside = NSBundle::bundleForClass(DemoDial::class_);
    }
    found_after = NSBundle::bundleForClass(DemoDial::class_);
  }).join();
  EXPECT_EQ(found, bundle_.get());
  EXPECT_EQ(found_inside, later.get());
  EXPECT_EQ(found_after, nullptr);
  const NSBundleScope scope(bundle_.get());
  EXPECT_EQ(NSBundle::bundleForClass(DemoDial::class_), bundle_.get()) << "before those of the thread";
}

}  // namespace
}  // namespace cocoa::stand_in
