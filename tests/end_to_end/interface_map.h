// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

namespace ondex::test {

/// In points, y upwards from the window's lower left corner.
struct Position {
  double x = 0;
  double y = 0;
};

struct Area {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  Position centre() const { return {x + width / 2, y + height / 2}; }
  double right() const { return x + width; }
  double top() const { return y + height; }
};

/// Where the editor's controls lie, read from the interface file that the program loads.
class InterfaceMap {
 public:
  explicit InterfaceMap(const std::string& file);

  /// Of the control that the editor knows by this name. Fails the test when there is none.
  Area control(const std::string& outlet) const;
  /// Of an element of the file.
  Area element(const std::string& id) const;
  const Area& editor() const { return editor_; }

 private:
  std::map<std::string, Area> areas_;           ///< by the element's id
  std::map<std::string, std::string> outlets_;  ///< the ids
  Area editor_;
};

}  // namespace ondex::test
