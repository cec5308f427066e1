// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace test_support {

/// Calls `condition` until it holds, waiting in between for one of the descriptors or the next 10 ms; false
/// after ten seconds without.
bool wait_until(const std::function<bool()>& condition, const std::vector<int>& descriptors = {});

/// A program that runs until this object goes, or until the test dies.
class Child {
 public:
  /// `display` becomes its $DISPLAY when it is not empty. `inherited` is a descriptor that it keeps, or -1.
  Child(const std::vector<std::string>& command, const std::string& display, int inherited = -1);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  bool running();
  pid_t process() const { return process_; }
  /// Without warning, as a crash would.
  void kill();

 private:
  void reap(int signal);
  pid_t process_ = -1;
};

/// An Xvfb with a screen of 1280 × 800 × 24 on a display that nobody else uses, without a window manager.
class XServer {
 public:
  explicit XServer(const std::vector<std::string>& extra_arguments = {});
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// As in $DISPLAY; empty when the server did not start.
  const std::string& display() const { return display_; }
  pid_t process() const { return server_->process(); }
  void kill() { server_->kill(); }

 private:
  std::unique_ptr<Child> server_;
  std::string display_;
};

/// Openbox on a display, started when it is ready to manage windows.
class WindowManager {
 public:
  explicit WindowManager(const std::string& display);
  bool started() const { return started_; }

 private:
  Child manager_;
  bool started_;
};

}  // namespace test_support
