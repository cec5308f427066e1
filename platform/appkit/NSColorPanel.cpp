// SPDX-License-Identifier: MIT
#include "appkit/private/NSColorPanel.h"

#include <algorithm>
#include <cmath>

#include "appkit/NSColorWell.h"
#include "appkit/NSFont.h"
#include "appkit/NSGraphicsContext.h"
#include "appkit/NSStringDrawing.h"
#include "appkit/private/color_entry.h"
#include "appkit/private/color_picking.h"

namespace cocoa {

namespace {

constexpr SEL entry_action("takeEntry:");
constexpr Action actions[] = {{entry_action, MethodAction<&NSColorPanel::takeEntry>::perform}};

// The layout, in points.
constexpr NSRect content = {{0, 0}, {362, 224}};
constexpr NSRect field_frame = {{8, 8}, {208, 208}};  // with room for the ring around its 192 × 192
constexpr NSRect hues_frame = {{220, 16}, {20, 192}};
constexpr NSRect comparison_frame = {{256, 166}, {90, 42}};
/// Room for the frames that a window manager puts around both windows.
constexpr CGFloat gap_to_owner = 16;

constexpr NSRect entry_frames[] = {
    {{280, 106}, {66, 22}}, {{280, 78}, {66, 22}}, {{280, 50}, {66, 22}}, {{280, 16}, {66, 22}}};

constexpr CGFloat entry_size = 12;
constexpr CGFloat caption_size = 10;
struct Caption {
  const char* text;
  NSRect rect;
};
constexpr Caption captions[] = {{"New", {{256, 149}, {45, 14}}}, {"Before", {{301, 149}, {45, 14}}},
                                {"R", {{254, 109}, {24, 14}}},   {"G", {{254, 81}, {24, 14}}},
                                {"B", {{254, 53}, {24, 14}}},    {"Hex", {{254, 19}, {24, 14}}}};

double in_255ths(CGFloat component) {
  return 255 * static_cast<double>(component);
}

Ref<NSNumberFormatter> make_component_formatter() {
  auto formatter = make<NSNumberFormatter>();
  formatter->setMinimum(0);
  formatter->setMaximum(255);
  return formatter;
}

Ref<NSTextField> make_entry(NSRect frame, NSNumberFormatter* formatter) {
  auto entry = make<NSTextField>(frame);
  entry->setFormatter(formatter);
  entry->setAlignment(NSRightTextAlignment);
  entry->setFont(NSFont::systemFontOfSize(entry_size).get());
  entry->setTextColor(NSColor::colorWithDeviceWhite_alpha(CGFloat(0.95), 1).get());
  entry->setBackgroundColor(NSColor::colorWithDeviceWhite_alpha(CGFloat(0.13), 1).get());
  entry->setSendsActionOnEndEditing(true);
  return entry;
}

/// What the parts lie on: a grey without any tint, so that colours look like what they are.
class Ground : public NSView {
 public:
  using NSView::NSView;
  bool isOpaque() const override { return true; }
  bool mouseDownCanMoveWindow() const override { return true; }
  void drawRect(NSRect) override {
    CGContextRef context = NSGraphicsContext::currentContext()->graphicsPort();
    constexpr auto grey = CGFloat(0.22);
    CGContextSetRGBFillColor(context, grey, grey, grey, 1);
    // Beyond the bounds too, which may end within a pixel.
    CGContextFillRect(context, NSInsetRect(bounds(), -2, -2));
    const auto style = NSMutableParagraphStyle::defaultParagraphStyle();
    style->setAlignment(NSCenterTextAlignment);
    const auto attributes = make<NSMutableDictionary>();
    attributes->setObject_forKey(NSFont::systemFontOfSize(caption_size).get(), NSFontAttributeName);
    attributes->setObject_forKey(style.get(), NSParagraphStyleAttributeName);
    attributes->setObject_forKey(NSColor::colorWithDeviceWhite_alpha(CGFloat(0.8), 1).get(),
                                 NSForegroundColorAttributeName);
    for (const Caption& caption : captions)
      drawInRect_withAttributes(make<NSString>(caption.text).get(), caption.rect, attributes.get());
  }
};

}  // namespace

const Class NSColorPanel::class_ = {
    .name = "NSColorPanel", .superclass = &NSWindow::class_, .actions = actions};

Ref<NSColorPanel> NSColorPanel::panelOf(NSWindow& window) {
  for (NSWindow* owned : window.ownedWindows()) {
    if (auto* panel = dynamic_cast<NSColorPanel*>(owned))
      return panel;
  }
  auto panel = make<NSColorPanel>();
  panel->setOwnerWindow(&window);
  return panel;
}

NSColorPanel::NSColorPanel() : NSWindow(content, NSTitledWindowMask | NSClosableWindowMask) {
  setTitle("Colour");
  setMovableByWindowBackground(true);
  setDelegate(this);
  addViews();
  showColor();
}

NSColorPanel::~NSColorPanel() {
  setDelegate(nullptr);
}

/// The views lie in the panel and report to it; they get no events once it has gone.
void NSColorPanel::addViews() {
  const auto ground = make<Ground>(content);
  field_ = make<SaturationBrightnessView>(field_frame);
  hues_ = make<HueView>(hues_frame);
  comparison_ = make<ColorComparisonView>(comparison_frame);
  field_->picked = [this](const Hsb& hsb) { pick(hsb); };
  hues_->picked = [this](const Hsb& hsb) { pick(hsb); };
  field_->released = [this] { endPicking(); };
  hues_->released = [this] { endPicking(); };
  comparison_->restored = [this] { restore(); };
  ground->addSubview(field_.get());
  ground->addSubview(hues_.get());
  ground->addSubview(comparison_.get());
  const Ref<NSNumberFormatter> component = make_component_formatter();
  const Ref<NSNumberFormatter> hex = make<HexColorFormatter>();
  for (size_t i = 0; i < entries_.size(); ++i) {
    entries_[i] = make_entry(entry_frames[i], i == hexadecimal ? hex.get() : component.get());
    entries_[i]->setTarget_action(this, entry_action);
    ground->addSubview(entries_[i].get());
  }
  setContentView(ground.get());
}

void NSColorPanel::edit(NSColorWell* well) {
  const Ref<NSColorWell> before(well_.get());
  if (before == well)
    return;
  const Ref<NSColorPanel> self(this);
  endPicking();
  well_ = WeakRef<NSColorWell>(well);
  if (before)
    before->setNeedsDisplay(true);
  if (!well)
    return;
  well->setNeedsDisplay(true);
  setColor(well->color());
  previous_ = well->color();
  showColor();
}

void NSColorPanel::setColor(NSColor* color) {
  if (!color)
    return;
  color_ = color->colorUsingDeviceRGB();
  hsb_ = hsb_of(*color_, hsb_);
  showColor();
}

void NSColorPanel::pick(const Hsb& hsb) {
  picking_ = true;
  hsb_ = hsb;
  take(color_of(hsb).get());
}

void NSColorPanel::endPicking() {
  const Ref<NSColorPanel> self(this);
  picking_ = false;
  if (const Ref<NSColorWell> well = well_.get())
    well->pickingEnded();
}

void NSColorPanel::restore() {
  endPicking();
  hsb_ = hsb_of(*previous_, hsb_);
  take(previous_.get());
}

/// Shows what the user has chosen, then tells the well, which may make the panel go.
void NSColorPanel::take(NSColor* color) {
  const Ref<NSColorPanel> self(this);
  color_ = color;
  showColor();
  if (const Ref<NSColorWell> well = well_.get())
    well->takeColorFrom(*this);
}

void NSColorPanel::showColor() {
  field_->show(hsb_);
  hues_->show(hsb_);
  comparison_->show(color_.get(), previous_.get());
  for (const Entry which : {red, green, blue, hexadecimal})
    entries_[which]->setDoubleValue(number(which));
}

/// What an entry shows, more exact than it shows it.
double NSColorPanel::number(Entry which) const {
  const double components[] = {in_255ths(color_->redComponent()), in_255ths(color_->greenComponent()),
                               in_255ths(color_->blueComponent())};
  if (which != hexadecimal)
    return components[which];
  return 65536 * std::nearbyint(components[red]) + 256 * std::nearbyint(components[green]) +
         std::nearbyint(components[blue]);
}

void NSColorPanel::takeEntry(NSObject* sender) {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [sender](const Ref<NSTextField>& entry) { return entry.get() == sender; });
  if (found == entries_.end())
    return;
  const Ref<NSColorPanel> self(this);
  endPicking();
  const auto which = static_cast<Entry>(found - entries_.begin());
  // Return leaves the entry open, with the numbers as they are now; leaving it does not.
  const bool stays = (*found)->isEditing();
  const double typed = (*found)->doubleValue();
  // Confirming what shows must not round a colour that was picked more finely.
  if (typed != number(which)) {
    double components[] = {number(red), number(green), number(blue)};
    if (which == hexadecimal) {
      components[red] = std::floor(typed / 65536);
      components[green] = std::fmod(std::floor(typed / 256), 256);
      components[blue] = std::fmod(typed, 256);
    } else {
      components[which] = typed;
    }
    const auto part = [&components](Entry of) { return static_cast<CGFloat>(components[of] / 255); };
    const auto color = NSColor::colorWithDeviceRed_green_blue_alpha(part(red), part(green), part(blue), 1);
    hsb_ = hsb_of(*color, hsb_);
    take(color.get());
  }
  if (stays)
    (*found)->selectText(this);
}

void NSColorPanel::cancelOperation(NSObject*) {
  for (const Entry which : {red, green, blue, hexadecimal}) {
    NSTextField& entry = *entries_[which];
    const std::string shown = entry.formatter()->stringFromNumber(number(which));
    if (!entry.isEditing() || entry.editedText().text() == shown)
      continue;
    entry.abortEditing();
    entry.selectText(this);
    return;
  }
  performClose(this);
}

void NSColorPanel::windowWillClose(NSWindow*) {
  edit(nullptr);
}

NSPoint NSColorPanel::originFor(NSRect owner, NSSize screen) const {
  const CGFloat right = NSMaxX(owner) + gap_to_owner;
  const bool fits = right + NSWidth(frame()) <= screen.width;
  return {fits ? right : NSMinX(owner) - gap_to_owner - NSWidth(frame()), NSMaxY(owner) - NSHeight(frame())};
}

}  // namespace cocoa
