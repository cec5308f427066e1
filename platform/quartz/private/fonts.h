// SPDX-License-Identifier: MIT
#pragma once

#include <fontconfig/fontconfig.h>
#include <ft2build.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include FT_FREETYPE_H

#include "quartz/private/font_face.h"

/// The fonts that the user's configuration has for a style.

namespace cocoa {

struct FontconfigDeleter {
  void operator()(FcConfig* config) const { FcConfigDestroy(config); }
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
  void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};
template <typename T>
using FontconfigPtr = std::unique_ptr<T, FontconfigDeleter>;

/// A face, and the others that stand in for it where it lacks a character.
class FontFamily {
 public:
  FontFamily(FT_Library library, FcConfig* config, std::string_view name, bool bold);

  bool is(std::string_view name, bool bold) const { return bold == bold_ && name == name_; }
  /// Null when there is no font at all.
  const std::shared_ptr<FontFace>& face();
  /// The first face that has what the text (one character as a reader sees it) consists of, else its first
  /// code point; `face()` when none has.
  std::shared_ptr<FontFace> face_for(std::string_view character);

 private:
  struct Substitute {
    FcPattern* pattern;  ///< belongs to the list
    std::shared_ptr<FontFace> face;
    bool is_unusable = false;
  };

  void list_substitutes();
  std::shared_ptr<FontFace> opened(Substitute& substitute);
  std::shared_ptr<FontFace> substitute_for(const std::u32string& characters);

  FT_Library library_;
  FcConfig* config_;
  std::string name_;
  bool bold_;
  FontconfigPtr<FcPattern> wanted_;
  std::shared_ptr<FontFace> face_;
  bool looked_up_ = false;
  FontconfigPtr<FcFontSet> list_;
  std::vector<Substitute> substitutes_;
};

/// The families that were used last, on one thread.
class Fonts {
 public:
  Fonts();
  ~Fonts();
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;

  /// An empty name is the system font. Valid until the next call.
  FontFamily& family(std::string_view name, bool bold);

 private:
  FT_Library library_ = nullptr;
  FontconfigPtr<FcConfig> config_;
  std::vector<std::unique_ptr<FontFamily>> families_;  ///< those used last come first
};

}  // namespace cocoa
