// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>

namespace ondex::test {

/// Does something in a process of its own in which the first allocation, release of memory, lock or system
/// call ends it, and returns what that was, such as "malloc" or "system call 39"; empty when it came to its
/// end.
std::string trapped(const std::function<void()>& work);

}  // namespace ondex::test
