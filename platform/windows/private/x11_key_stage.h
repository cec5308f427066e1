// SPDX-License-Identifier: MIT
#pragma once

namespace cocoa {

/// How far a window is with the keys. The server takes its time: what it was asked for comes later, also
/// after the window no longer wants it.
class X11KeyStage {
 public:
  /// From each of them the loss of the keys leads back to the first.
  enum class Stage {
    without,     ///< next: asked, or held when others give them
    asked,       ///< the server was asked for them; next: held, or recalled
    recalled,    ///< given back before they came, which they still may; next: given_back, or asked
    held,        ///< the server has said so; next: given_back
    given_back,  ///< the server has not yet said that they are gone; next: held, when it is asked again
  };

  Stage stage() const { return stage_; }
  bool isHeld() const { return stage_ == Stage::held || stage_ == Stage::given_back; }
  /// Whether the window has them or is about to.
  bool isClaimed() const { return isHeld() || stage_ == Stage::asked; }

  /// The server is asked for them.
  void ask();
  /// They come, asked for or not.
  void get();
  /// They go back to who had them before. False when there is nothing to give, or when that was done: by now
  /// somebody else may have them.
  bool giveBack();
  void lose() { stage_ = Stage::without; }

 private:
  Stage stage_ = Stage::without;
};

/// How often a window takes the keys again. A program that insists on them gets them: a pointer does not come
/// and go so often.
class X11RetakeLimit {
 public:
  /// Whether they may be taken again at `now`, in seconds; counts it.
  bool allows(double now);
  /// Whether they have been taken again since reset().
  bool any() const { return times_ > 0; }
  void reset() { times_ = 0; }

 private:
  int times_ = 0;
  double since_ = 0;
};

}  // namespace cocoa
