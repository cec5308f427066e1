#include "foundation/private/binary_property_list.h"

#include <array>
#include <bit>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "foundation/private/property_list.h"

namespace cocoa {

namespace {

/// A list is this header, its objects, a table of their offsets, and a trailer. Numbers are big-endian.
constexpr std::string_view kHeader = "bplist00";
constexpr size_t kTrailerSize = 32;
constexpr int kMaximumDepth = 64;
/// Shared values are written out at each place, so that a small list could stand for an immense one.
constexpr size_t kMaximumXmlSize = size_t{1} << 20U;

/// Writes one list out as XML. The first failure sticks.
class Converter {
 public:
  explicit Converter(std::string_view bytes) : bytes_(bytes) {}

  void convert();
  const char* failure() const { return failure_; }
  std::string& xml() { return xml_; }

 private:
  /// What stands at the beginning of an object: its kind, and how long it is in the kind's own unit.
  struct Start {
    unsigned kind = 0;
    uint64_t count = 0;
    size_t contents = 0;
  };

  void fail(const char* cause);
  std::string_view take(size_t place, uint64_t length);
  uint64_t number(size_t place, size_t byte_count);
  Start startOf(uint64_t object);
  void writeObject(uint64_t object, int depth);
  void writeConstant(uint64_t value);
  void writeInteger(const Start& start);
  void writeReal(const Start& start);
  void writeDate(const Start& start);
  void writeUTF16(const Start& start);
  void writeArray(const Start& start, int depth);
  void writeDictionary(const Start& start, int depth);
  void writeText(const char* element, std::string_view text);
  void write(std::string_view xml);
  double real(const Start& start);

  std::string_view bytes_;
  size_t offset_size_ = 0;
  size_t reference_size_ = 0;
  uint64_t object_count_ = 0;
  size_t table_ = 0;
  std::string xml_;
  const char* failure_ = nullptr;
};

template <typename Number>
std::string spelled(Number value) {
  std::array<char, 64> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() ? std::string(text.data(), end) : std::string();
}

std::string two_digits(unsigned value) {
  return {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
}

void append_utf8(std::string& text, uint32_t code) {
  const auto tail = [&](unsigned shift) { text += static_cast<char>(0x80U | ((code >> shift) & 0x3FU)); };
  if (code < 0x80) {
    text += static_cast<char>(code);
  } else if (code < 0x800) {
    text += static_cast<char>(0xC0U | (code >> 6U));
    tail(0);
  } else if (code < 0x10000) {
    text += static_cast<char>(0xE0U | (code >> 12U));
    tail(6);
    tail(0);
  } else {
    text += static_cast<char>(0xF0U | (code >> 18U));
    tail(12);
    tail(6);
    tail(0);
  }
}

void Converter::fail(const char* cause) {
  if (!failure_)
    failure_ = cause;
}

/// Empty on failure.
std::string_view Converter::take(size_t place, uint64_t length) {
  if (place > bytes_.size() || length > bytes_.size() - place) {
    fail("an object that reaches beyond the end");
    return {};
  }
  return bytes_.substr(place, static_cast<size_t>(length));
}

uint64_t Converter::number(size_t place, size_t byte_count) {
  uint64_t value = 0;
  for (const char byte : take(place, byte_count))
    value = (value << 8U) | static_cast<uint8_t>(byte);
  return value;
}

void Converter::convert() {
  if (!is_binary_property_list(bytes_) || bytes_.size() < kHeader.size() + kTrailerSize) {
    fail("not a binary property list");
    return;
  }
  const size_t trailer = bytes_.size() - kTrailerSize;
  offset_size_ = number(trailer + 6, 1);
  reference_size_ = number(trailer + 7, 1);
  object_count_ = number(trailer + 8, 8);
  const uint64_t top = number(trailer + 16, 8);
  const uint64_t table = number(trailer + 24, 8);
  const auto is_size = [](size_t size) { return size >= 1 && size <= 8; };
  if (!is_size(offset_size_) || !is_size(reference_size_) || table > trailer ||
      object_count_ > (trailer - table) / offset_size_) {
    fail("a trailer that does not fit the list");
    return;
  }
  table_ = static_cast<size_t>(table);
  write("<plist version=\"1.0\">");
  writeObject(top, 0);
  write("</plist>");
}

Converter::Start Converter::startOf(uint64_t object) {
  if (object >= object_count_) {
    fail("a reference to nothing");
    return {};
  }
  const uint64_t offset = number(table_ + static_cast<size_t>(object) * offset_size_, offset_size_);
  if (offset < kHeader.size() || offset >= table_) {
    fail("an object outside the list");
    return {};
  }
  const auto place = static_cast<size_t>(offset);
  const auto marker = static_cast<unsigned>(number(place, 1));
  Start start{.kind = marker >> 4U, .count = marker & 0xFU, .contents = place + 1};
  const bool has_long_count = start.count == 0xF && start.kind >= 0x4 && start.kind != 0x8;
  if (has_long_count) {
    const auto size_marker = static_cast<unsigned>(number(place + 1, 1));
    if (size_marker < 0x10 || size_marker > 0x13) {
      fail("a length that is no number");
      return {};
    }
    const size_t byte_count = size_t{1} << (size_marker & 0xFU);
    start.count = number(place + 2, byte_count);
    start.contents = place + 2 + byte_count;
  }
  return start;
}

void Converter::writeObject(uint64_t object, int depth) {
  if (depth > kMaximumDepth)
    fail("nested too deeply");
  const Start start = startOf(object);
  if (failure_)
    return;
  switch (start.kind) {
    case 0x0:
      return writeConstant(start.count);
    case 0x1:
      return writeInteger(start);
    case 0x2:
      return writeReal(start);
    case 0x3:
      return writeDate(start);
    case 0x4: {
      const std::string_view data = take(start.contents, start.count);
      return writeText("data",
                       base64_from_bytes({reinterpret_cast<const uint8_t*>(data.data()), data.size()}));
    }
    case 0x5:
      return writeText("string", take(start.contents, start.count));
    case 0x6:
      return writeUTF16(start);
    case 0xA:
      return writeArray(start, depth);
    case 0xD:
      return writeDictionary(start, depth);
    default:
      fail("an object of a kind that XML does not have");
  }
}

void Converter::writeConstant(uint64_t value) {
  if (value == 0x8 || value == 0x9) {
    write(value == 0x9 ? "<true/>" : "<false/>");
  } else {
    fail("an object of a kind that XML does not have");
  }
}

/// Those of one, two and four bytes have no sign.
void Converter::writeInteger(const Start& start) {
  if (start.count > 3) {
    fail("an integer that is too long");
    return;
  }
  const uint64_t bits = number(start.contents, size_t{1} << start.count);
  writeText("integer", start.count == 3 ? spelled(static_cast<int64_t>(bits)) : spelled(bits));
}

double Converter::real(const Start& start) {
  if (start.count == 2)
    return std::bit_cast<float>(static_cast<uint32_t>(number(start.contents, 4)));
  if (start.count != 3)
    fail("a number of unknown length");
  return std::bit_cast<double>(number(start.contents, 8));
}

void Converter::writeReal(const Start& start) {
  writeText("real", spelled(real(start)));
}

/// Seconds from the first of January 2001.
void Converter::writeDate(const Start& start) {
  using namespace std::chrono;
  const double seconds_since = real(start);
  constexpr double kThousandsOfYears = 1e11;
  if (!(std::fabs(seconds_since) < kThousandsOfYears)) {
    fail("a date that has no year");
    return;
  }
  const auto moment = sys_days(year(2001) / 1 / 1) + seconds(std::llround(std::floor(seconds_since)));
  const auto midnight = floor<days>(moment);
  const year_month_day date(midnight);
  const hh_mm_ss time(moment - midnight);
  const int year_number = static_cast<int>(date.year());
  if (year_number < 0 || year_number > 9999) {
    fail("a date that has no year of four digits");
    return;
  }
  const auto years = static_cast<unsigned>(year_number);
  writeText("date", two_digits(years / 100) + two_digits(years % 100) + '-' +
                        two_digits(static_cast<unsigned>(date.month())) + '-' +
                        two_digits(static_cast<unsigned>(date.day())) + 'T' +
                        two_digits(static_cast<unsigned>(time.hours().count())) + ':' +
                        two_digits(static_cast<unsigned>(time.minutes().count())) + ':' +
                        two_digits(static_cast<unsigned>(time.seconds().count())) + 'Z');
}

void Converter::writeUTF16(const Start& start) {
  if (start.count > bytes_.size() / 2) {
    fail("an object that reaches beyond the end");
    return;
  }
  const auto unit = [&](uint64_t i) {
    return static_cast<uint32_t>(number(start.contents + 2 * static_cast<size_t>(i), 2));
  };
  std::string text;
  for (uint64_t i = 0; i < start.count && !failure_; ++i) {
    uint32_t code = unit(i);
    const bool is_pair = code >= 0xD800 && code < 0xDC00 && i + 1 < start.count;
    if (is_pair && unit(i + 1) >= 0xDC00 && unit(i + 1) < 0xE000)
      code = 0x10000 + ((code - 0xD800) << 10U) + (unit(++i) - 0xDC00);
    append_utf8(text, code);
  }
  writeText("string", text);
}

void Converter::writeArray(const Start& start, int depth) {
  write("<array>");
  for (uint64_t i = 0; i < start.count && !failure_; ++i) {
    const size_t place = start.contents + static_cast<size_t>(i) * reference_size_;
    writeObject(number(place, reference_size_), depth + 1);
  }
  write("</array>");
}

void Converter::writeDictionary(const Start& start, int depth) {
  if (start.count > bytes_.size()) {
    fail("an object that reaches beyond the end");
    return;
  }
  const size_t values = start.contents + static_cast<size_t>(start.count) * reference_size_;
  write("<dict>");
  for (uint64_t i = 0; i < start.count && !failure_; ++i) {
    const size_t step = static_cast<size_t>(i) * reference_size_;
    // A key is a text: it is written as one, then renamed.
    const size_t key = xml_.size();
    writeObject(number(start.contents + step, reference_size_), depth + 1);
    constexpr std::string_view kOpening = "<string>";
    constexpr std::string_view kClosing = "</string>";
    if (!failure_ && xml_.compare(key, kOpening.size(), kOpening) != 0)
      fail("a key that is no text");
    if (failure_)
      return;
    xml_.replace(xml_.size() - kClosing.size(), kClosing.size(), "</key>");
    xml_.replace(key, kOpening.size(), "<key>");
    writeObject(number(values + step, reference_size_), depth + 1);
  }
  write("</dict>");
}

void Converter::writeText(const char* element, std::string_view text) {
  if (!is_xml_text(text)) {
    fail("a text that XML cannot hold");
    return;
  }
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '&':
        escaped += "&amp;";
        break;
      case '\r':
        escaped += "&#13;";
        break;
      default:
        escaped += c;
    }
  }
  const std::string name(element);
  write('<' + name + '>' + escaped + "</" + name + '>');
}

void Converter::write(std::string_view xml) {
  if (xml_.size() + xml.size() > kMaximumXmlSize)
    fail("too large when written out");
  if (!failure_)
    xml_ += xml;
}

}  // namespace

bool is_binary_property_list(std::string_view bytes) {
  return bytes.starts_with(kHeader);
}

std::optional<std::string> xml_from_binary_property_list(std::string_view bytes, std::string& cause) {
  Converter converter(bytes);
  converter.convert();
  if (converter.failure()) {
    cause = converter.failure();
    return std::nullopt;
  }
  return std::move(converter.xml());
}

}  // namespace cocoa
