// SPDX-License-Identifier: MIT
#pragma once

namespace ondex {

/// Opens those of the descriptors 0, 1 and 2 on /dev/null with which the program was started closed. Else
/// what it opens next, such as the connection to the display, would take their place, and text and commands
/// go there. False when there is no /dev/null. Called before anything else is opened.
bool open_standard_streams();

/// The terminal may give the program neither commands nor, under `stty tostop`, take its text while another
/// job is in the foreground. It is not to be stopped for that: its window lives on.
void ignore_terminal_stops();

/// Whether the descriptor is the program's terminal while another job is in the foreground, so that nothing
/// can be read from it.
bool reads_in_background(int descriptor);

}  // namespace ondex
