// SPDX-License-Identifier: MIT
#include "quartz/private/fonts.h"

#include <algorithm>

#include "unicode/character_classes.h"
#include "unicode/utf8_text.h"

namespace cocoa {

namespace {

constexpr size_t kept_families = 8;

FontconfigPtr<FcPattern> pattern_for(FcConfig* config, const std::string& name, bool bold) {
  FontconfigPtr<FcPattern> pattern(FcPatternCreate());
  const char* family = name.empty() ? "Sans" : name.c_str();
  FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  FcPatternAddInteger(pattern.get(), FC_WEIGHT, bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
  FcPatternAddInteger(pattern.get(), FC_SLANT, FC_SLANT_ROMAN);
  FcConfigSubstitute(config, pattern.get(), FcMatchPattern);
  FcDefaultSubstitute(pattern.get());
  return pattern;
}

/// What a font must have to show a character; joiners and selectors of variants do not show.
std::u32string needed_of(std::string_view character) {
  std::u32string needed;
  for (size_t at = 0; at < character.size();) {
    const CodePoint c = code_point_at(character, at);
    const bool selects =
        (c.value >= 0xFE00 && c.value <= 0xFE0F) || (c.value >= 0xE0020 && c.value <= 0xE01EF);
    const bool joins = c.value >= 0x200B && c.value <= 0x200F;
    if (needed.empty() || (!selects && !joins))
      needed += c.value;
    at += c.length;
  }
  return needed;
}

bool has_all(const FontFace& face, const std::u32string& characters) {
  return std::all_of(characters.begin(), characters.end(), [&](char32_t c) { return face.has(c); });
}

bool may_have_all(const FcPattern* pattern, const std::u32string& characters) {
  FcCharSet* set = nullptr;
  return FcPatternGetCharSet(pattern, FC_CHARSET, 0, &set) == FcResultMatch &&
         std::all_of(characters.begin(), characters.end(),
                     [&](char32_t c) { return FcCharSetHasChar(set, c) != FcFalse; });
}

/// Pictures of letters, of one size, cannot be drawn at every scale.
bool has_outlines(const FcPattern* pattern) {
  FcBool outline = FcFalse;
  return FcPatternGetBool(pattern, FC_OUTLINE, 0, &outline) == FcResultMatch && outline != FcFalse;
}

}  // namespace

FontFamily::FontFamily(FT_Library library, FcConfig* config, std::string_view name, bool bold)
    : library_(library),
      config_(config),
      name_(name),
      bold_(bold),
      wanted_(pattern_for(config, name_, bold)) {}

const std::shared_ptr<FontFace>& FontFamily::face() {
  if (looked_up_)
    return face_;
  looked_up_ = true;
  FcResult result = FcResultNoMatch;
  const FontconfigPtr<FcPattern> match(FcFontMatch(config_, wanted_.get(), &result));
  if (match && has_outlines(match.get()))
    face_ = FontFace::open(library_, match.get());
  if (face_)
    return face_;
  list_substitutes();
  for (size_t i = 0; i < substitutes_.size() && !face_; ++i)
    face_ = opened(substitutes_[i]);
  return face_;
}

void FontFamily::list_substitutes() {
  if (list_)
    return;
  FcResult result = FcResultNoMatch;
  list_.reset(FcFontSort(config_, wanted_.get(), FcTrue, nullptr, &result));
  for (int i = 0; list_ && i < list_->nfont; ++i) {
    if (has_outlines(list_->fonts[i]))
      substitutes_.push_back({list_->fonts[i], nullptr});
  }
}

std::shared_ptr<FontFace> FontFamily::opened(Substitute& substitute) {
  if (substitute.face || substitute.is_unusable)
    return substitute.face;
  const FontconfigPtr<FcPattern> font(FcFontRenderPrepare(config_, wanted_.get(), substitute.pattern));
  substitute.face = font ? FontFace::open(library_, font.get()) : nullptr;
  substitute.is_unusable = !substitute.face;
  return substitute.face;
}

std::shared_ptr<FontFace> FontFamily::substitute_for(const std::u32string& characters) {
  list_substitutes();
  for (Substitute& substitute : substitutes_) {
    if (!may_have_all(substitute.pattern, characters))
      continue;
    std::shared_ptr<FontFace> face = opened(substitute);
    if (face && has_all(*face, characters))
      return face;
  }
  return nullptr;
}

std::shared_ptr<FontFace> FontFamily::face_for(std::string_view character) {
  const std::shared_ptr<FontFace>& own = face();
  const std::u32string needed = needed_of(character);
  if (!own || has_all(*own, needed) || is_control(needed.front()))
    return own;
  if (std::shared_ptr<FontFace> found = substitute_for(needed))
    return found;
  const std::u32string base = needed.substr(0, 1);
  if (base == needed || has_all(*own, base))
    return own;
  const std::shared_ptr<FontFace> found = substitute_for(base);
  return found ? found : own;
}

Fonts::Fonts() : config_(FcConfigReference(nullptr)) {
  if (FT_Init_FreeType(&library_) != FT_Err_Ok)
    library_ = nullptr;
}

Fonts::~Fonts() {
  families_.clear();
  FT_Done_FreeType(library_);
}

FontFamily& Fonts::family(std::string_view name, bool bold) {
  const auto found = std::find_if(families_.begin(), families_.end(),
                                  [&](const auto& family) { return family->is(name, bold); });
  if (found != families_.end()) {
    std::rotate(families_.begin(), found, found + 1);
    return *families_.front();
  }
  if (families_.size() == kept_families)
    families_.pop_back();
  families_.insert(families_.begin(), std::make_unique<FontFamily>(library_, config_.get(), name, bold));
  return *families_.front();
}

}  // namespace cocoa
