// SPDX-License-Identifier: MIT
// Changes the editor and repaints what that damaged, as often as asked, so that something else can count what
// a repaint takes: repaints full|graph|knob|readout|nothing COUNT. No two changes are the same.

#include <cstdlib>
#include <string>

#include "open_editor.h"

namespace ondex {
namespace {

/// False for a change that there is not.
bool change(KVOndexView& view, const std::string& what, int i) {
  if (what == "full") {
    view.setNeedsDisplay(true);
  } else if (what == "graph") {
    auto& graph = view._vibrato_left_oscillator_response_view;
    graph->set_modulation_factor(20);
    graph->set_modulation_index(20 - 0.01F * static_cast<float>(i));
    graph->setNeedsDisplay(true);
  } else if (what == "knob") {
    view._knob->set_current_value(0.25 + 0.001 * i);
  } else if (what == "readout") {
    view._tremolo_left_fm_mod_index_parameter->set_current_value(1.25 + 0.05 * i);
  } else {
    return what == "nothing";
  }
  return true;
}

}  // namespace
}  // namespace ondex

int main(int argc, char** argv) {
  if (argc != 3)
    return 2;
  ondex::OpenEditor open;
  const int count = std::atoi(argv[2]);
  for (int i = 0; i < count; ++i) {
    if (!ondex::change(*open.view, argv[1], i))
      return 2;
    open.repaint();
  }
  return 0;
}
