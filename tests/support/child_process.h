// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <csignal>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ondex::test {

/// A program with its standard streams in our hands. It ends when this goes or the test dies.
class ChildProcess {
 public:
  struct Setup {
    std::vector<std::string> arguments;                             ///< the program's path first
    std::map<std::string, std::optional<std::string>> environment;  ///< set, or unset where there is no value
    int end =
        SIGKILL;  ///< the signal that ends it; other than SIGKILL where it has to clean up behind itself
    std::function<void()> prepare = {};  ///< called in the new process, with its streams, before the program
  };
  explicit ChildProcess(const Setup& setup);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  void write(std::string_view text);
  void close_input();
  /// Nobody reads its standard output any more.
  void close_output();
  void signal(int number);

  /// Reads standard output until a complete line holds `text`, and returns that line. Fails the test and
  /// returns an empty line when the program ends or nothing comes within a generous deadline.
  std::string wait_for_line(std::string_view text);
  /// Whether a line holding `text` has come by now; reads what is there without waiting.
  bool has_line(std::string_view text);
  bool running();
  /// Bytes that it has written to its standard output, or to its standard error, and nobody has read.
  int unread_output() const;
  int unread_errors() const;
  /// Waits for the end; the exit status, or minus the number of the signal that ended it.
  int wait_for_exit();
  /// Everything the program wrote so far.
  const std::string& output();
  const std::string& errors();
  /// Forgets the output so far.
  void forget_output();

 private:
  bool read_some(int milliseconds);
  void drain();
  void note_end(int status);
  pid_t pid_ = -1;
  int end_;
  int input_ = -1;
  int output_descriptor_ = -1;
  int error_descriptor_ = -1;
  std::string output_;
  std::string errors_;
  size_t searched_ = 0;
  std::optional<int> status_;
};

}  // namespace ondex::test
