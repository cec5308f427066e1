// SPDX-License-Identifier: MIT
#include <random>

#include "interface_file_fixture.h"

/// Interface files that are well-formed and changed at random: whatever they say, the editor opens or the log
/// tells why not, and what opens can be used and closed.

namespace ondex::test {
namespace {

using namespace cocoa;

class InterfaceFilesAtRandom : public InterfaceFileTest, public testing::WithParamInterface<unsigned> {
 protected:
  size_t any(size_t count) { return random_() % count; }
  pugi::xml_node any_of(const std::vector<pugi::xml_node>& nodes) { return nodes[any(nodes.size())]; }
  static std::vector<pugi::xml_node> all(const File& file, const char* name) {
    std::vector<pugi::xml_node> found;
    const pugi::xpath_node_set set = file.document.select_nodes((std::string("//") + name).c_str());
    for (const pugi::xpath_node& each : set)
      found.push_back(each.node());
    return found;
  }
  /// A view with all that lies in it, into another or among the top-level objects.
  void move_a_view(const File& file) {
    const pugi::xml_node moved = any_of(all(file, "customView"));
    const auto views = all(file, "customView");
    const size_t target = any(views.size() + 1);
    // A view that lies in the moved one stays where it is: the library refuses.
    (target == views.size() ? file.objects() : File::subviews_of(views[target])).append_move(moved);
  }
  void connect_elsewhere(const File& file) {
    const pugi::xml_node outlet = any_of(all(file, "outlet"));
    const auto objects = all(file, "*[@id][not(self::outlet)][not(self::action)]");
    outlet.attribute("destination") = any_of(objects).attribute("id").value();
  }
  void exchange_connections(const File& file) {
    pugi::xml_attribute one = any_of(all(file, "outlet")).attribute("destination");
    pugi::xml_attribute other = any_of(all(file, "outlet")).attribute("destination");
    const std::string kept = one.value();
    one = other.value();
    other = kept.c_str();
  }
  void change(File& file) {
    switch (any(5)) {
      case 0:
        return file.remove(any_of(all(file, "outlet")));
      case 1:
        return connect_elsewhere(file);
      case 2:
        return exchange_connections(file);
      case 3:
        return File::set_size(any_of(all(file, "customView")), any(2) ? "0" : "3000", any(2) ? "0" : "1");
      default:
        return move_a_view(file);
    }
  }

 private:
  std::mt19937 random_{GetParam()};
};

TEST_P(InterfaceFilesAtRandom, AreUsableOrRefused) {
  for (size_t changes = 1 + any(6); changes > 0; --changes)
    change(any(4) == 0 ? preferences_file : view_file);
  open_changed();
  if (!editor) {
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.back(), "Ondex: Unable to load nib for view.");
    return;
  }
  use();
  editor->do_preferences_panel(nullptr);
  serve();
  close();
}

INSTANTIATE_TEST_SUITE_P(Seeds, InterfaceFilesAtRandom, testing::Range(0U, 60U));

}  // namespace
}  // namespace ondex::test
