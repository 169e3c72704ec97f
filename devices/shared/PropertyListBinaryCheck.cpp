// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListBinaryCheck.h"

#include "devices/shared/PropertyListScalar.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

namespace hushmode::devices {

namespace {

constexpr std::string_view kMagic = "bplist00";
constexpr std::size_t kTrailerSize = 32;

struct Fault {
  std::size_t at;
  std::string text;
};

/// High four bits of an object's first byte.
enum Kind : unsigned {
  kSingle = 0x0,
  kInteger = 0x1,
  kReal = 0x2,
  kDate = 0x3,
  kData = 0x4,
  kAscii = 0x5,
  kUtf16 = 0x6,
  kArray = 0xA,
  kDictionary = 0xD,
};

/// An object as its first bytes tell it.
struct Object {
  unsigned kind;
  std::size_t at;       ///< Of its first byte.
  std::size_t payload;  ///< Where its content begins.
  std::size_t count;    ///< Bytes, characters, elements or entries.

  bool isContainer() const { return kind == kArray || kind == kDictionary; }
  std::size_t references() const { return kind == kDictionary ? 2 * count : kind == kArray ? count : 0; }
};

/// What an object and everything below it come to, shared parts counted at each place.
struct Extent {
  enum class State : std::uint8_t { Unseen, Open, Known } state = State::Unseen;
  std::uint32_t depth = 0;
  std::uint64_t values = 0;
  std::uint64_t bytes = 0;
};

/// Goes once through each object that the top object leads to; throws the first fault.
class BinaryCheck {
 public:
  BinaryCheck(std::string_view bytes, const PropertyListLimits& limits) : bytes_(bytes), limits_(limits) {}

  void list();

 private:
  /// A container whose references are being followed.
  struct Step {
    std::size_t number;
    Object object;
    std::size_t next;  ///< The reference to follow next.
  };

  [[noreturn]] void fail(std::size_t at, std::string text) const { throw Fault{at, std::move(text)}; }

  std::uint64_t bigEndian(std::size_t at, std::size_t size) const;
  void trailer();
  Object objectAt(std::size_t number) const;
  std::size_t reference(const Object& object, std::size_t index) const;
  void scalar(const Object& object) const;
  void integer(const Object& object) const;
  void date(const Object& object) const;
  void ascii(const Object& object) const;
  void utf16(const Object& object) const;
  void key(std::size_t number) const;
  void enter(std::size_t number);
  void add(Step& step, const Extent& child);

  std::string_view bytes_;
  const PropertyListLimits& limits_;
  std::size_t offsetSize_ = 0, referenceSize_ = 0, table_ = 0, objects_ = 0, top_ = 0;
  std::vector<Extent> extents_;  ///< By object number.
  std::vector<Step> path_;       ///< From the top object down to where the check is.
  std::uint64_t references_ = 0, payload_ = 0;
};

/// `size` is 1 to 8, and the bytes are there.
std::uint64_t BinaryCheck::bigEndian(std::size_t at, std::size_t size) const {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) number = number << 8 | static_cast<unsigned char>(bytes_[at + i]);
  return number;
}

void BinaryCheck::trailer() {
  if (bytes_.size() < kMagic.size() + kTrailerSize)
    fail(bytes_.size(), tr("expected 32 bytes of trailer, found the end"));
  if (!bytes_.starts_with(kMagic)) fail(6, tr("expected version 00"));
  const std::size_t at = bytes_.size() - kTrailerSize;
  offsetSize_ = bigEndian(at + 6, 1);
  referenceSize_ = bigEndian(at + 7, 1);
  const std::uint64_t objects = bigEndian(at + 8, 8), top = bigEndian(at + 16, 8), table = bigEndian(at + 24, 8);
  if (offsetSize_ < 1 || offsetSize_ > 8) fail(at + 6, tr("expected offsets of 1 to 8 bytes"));
  if (referenceSize_ < 1 || referenceSize_ > 8) fail(at + 7, tr("expected references of 1 to 8 bytes"));
  if (objects == 0) fail(at + 8, tr("expected an object, found none"));
  if (objects > limits_.values) fail(at + 8, tr("more than {} objects", limits_.values));
  if (top >= objects) fail(at + 16, tr("expected the top object in the table, found number {}", top));
  if (table < kMagic.size() || table > at || (at - table) / offsetSize_ < objects) {
    fail(at + 24, tr("expected a table of offsets inside the file"));
  }
  objects_ = static_cast<std::size_t>(objects);
  top_ = static_cast<std::size_t>(top);
  table_ = static_cast<std::size_t>(table);
}

Object BinaryCheck::objectAt(std::size_t number) const {
  const std::size_t entry = table_ + number * offsetSize_;
  const std::uint64_t offset = bigEndian(entry, offsetSize_);
  if (offset < kMagic.size() || offset >= table_) fail(entry, tr("expected the offset of an object, before the table"));

  const auto at = static_cast<std::size_t>(offset);
  const auto marker = static_cast<unsigned char>(bytes_[at]);
  Object object{static_cast<unsigned>(marker) >> 4, at, at + 1, marker & 0xFu};
  std::size_t room = table_ - object.payload;
  std::size_t unit = 1;
  switch (object.kind) {
    case kSingle:
      if (object.count != 8 && object.count != 9) fail(at, tr("expected a value, found marker {}", marker));
      return object;
    case kInteger:
    case kReal:
    case kDate:
      object.count = std::size_t{1} << object.count;
      break;
    case kData:
    case kAscii:
    case kUtf16:
    case kArray:
    case kDictionary:
      if (object.count == 0xF) {
        // The count itself follows, as an integer.
        const auto size = room == 0 ? 0 : static_cast<unsigned char>(bytes_[object.payload]);
        if ((size & 0xF0u) != 0x10 || (size & 0xFu) > 3 || room < 1 + (std::size_t{1} << (size & 0xFu))) {
          fail(object.payload, tr("expected a count of 1 to 8 bytes"));
        }
        const std::size_t length = std::size_t{1} << (size & 0xFu);
        const std::uint64_t count = bigEndian(object.payload + 1, length);
        object.payload += 1 + length;
        room -= 1 + length;
        if (count > room) fail(at, tr("expected the object to end before the table of offsets"));
        object.count = static_cast<std::size_t>(count);
      }
      unit = object.kind == kUtf16 ? 2 : object.isContainer() ? referenceSize_ : 1;
      break;
    default:
      fail(at, tr("expected a value, found marker {}", marker));
  }
  const std::size_t units = object.isContainer() ? object.references() : object.count;
  if (units > room / unit) fail(at, tr("expected the object to end before the table of offsets"));
  return object;
}

std::size_t BinaryCheck::reference(const Object& object, std::size_t index) const {
  const std::size_t at = object.payload + index * referenceSize_;
  const std::uint64_t number = bigEndian(at, referenceSize_);
  if (number >= objects_) fail(at, tr("expected an object of the table, found reference {}", number));
  return static_cast<std::size_t>(number);
}

void BinaryCheck::integer(const Object& object) const {
  if (object.count <= 8) return;
  // Of 16 bytes, those ahead of the last 8 must only carry the sign on.
  const bool fits =
      object.count == 16 && bigEndian(object.payload, 8) == (bytes_[object.payload + 8] & 0x80 ? ~std::uint64_t{0} : 0);
  if (!fits) fail(object.at, tr("expected a whole number of 64 bits"));
}

void BinaryCheck::date(const Object& object) const {
  if (object.count != 8) fail(object.at, tr("expected a date of 8 bytes"));
  const double seconds = std::bit_cast<double>(bigEndian(object.payload, 8)) + static_cast<double>(kPropertyListEpoch);
  if (!(seconds >= static_cast<double>(kFirstPropertyListSecond) &&
        seconds <= static_cast<double>(kLastPropertyListSecond))) {
    fail(object.at, tr("expected a date from 1932-12-13 to 2069-01-19"));
  }
}

/// libplist ends texts at a null character.
void BinaryCheck::ascii(const Object& object) const {
  const std::string_view text = bytes_.substr(object.payload, object.count);
  const auto isUnfit = [](char c) { return c == 0 || (c & 0x80); };
  if (std::any_of(text.begin(), text.end(), isUnfit))
    fail(object.at, tr("expected ASCII text without null characters"));
}

void BinaryCheck::utf16(const Object& object) const {
  // Writers make an empty text of ASCII; libplist reads no other.
  if (object.count == 0) fail(object.at, tr("expected UTF-16 text, found none"));
  for (std::size_t i = 0; i < object.count; ++i) {
    const std::size_t at = object.payload + 2 * i;
    const std::uint64_t unit = bigEndian(at, 2);
    const std::uint64_t half = unit & 0xFC00;
    if (unit == 0) fail(at, tr("expected UTF-16 text without null characters"));
    if (half == 0xD800 && i + 1 < object.count && (bigEndian(at + 2, 2) & 0xFC00) == 0xDC00) {
      ++i;
    } else if (half == 0xD800 || half == 0xDC00) {
      fail(at, tr("expected UTF-16 text, found half a surrogate pair"));
    }
  }
}

void BinaryCheck::scalar(const Object& object) const {
  if (object.kind == kInteger) integer(object);
  if (object.kind == kReal && object.count != 4 && object.count != 8)
    fail(object.at, tr("expected a real of 4 or 8 bytes"));
  if (object.kind == kDate) date(object);
  if (object.kind == kAscii) ascii(object);
  if (object.kind == kUtf16) utf16(object);
}

void BinaryCheck::key(std::size_t number) const {
  const Object object = objectAt(number);
  if (object.kind != kAscii && object.kind != kUtf16) fail(object.at, tr("expected a text for a key"));
}

void BinaryCheck::add(Step& step, const Extent& child) {
  Extent& sum = extents_[step.number];
  sum.depth = std::max(sum.depth, child.depth);
  if (path_.size() + child.depth > limits_.depth) {
    fail(step.object.at, tr("nested deeper than {}", limits_.depth));
  }
  if (child.values > limits_.values - sum.values) {
    fail(step.object.at, tr("more than {} values", limits_.values));
  }
  sum.values += child.values;
  if (child.bytes > limits_.bytes - sum.bytes) {
    fail(step.object.at, tr("more than {} bytes of values", limits_.bytes));
  }
  sum.bytes += child.bytes;
}

/// Makes the extent of a scalar known, or opens a container.
void BinaryCheck::enter(std::size_t number) {
  const Object object = objectAt(number);
  Extent& extent = extents_[number];
  extent.values = 1;
  if (!object.isContainer() && object.kind != kSingle) extent.bytes = object.count * (object.kind == kUtf16 ? 3 : 1);

  // Objects may overlap in the file, so the work is bounded here, ahead of the sums.
  references_ += object.references();
  payload_ += extent.bytes;
  if (references_ > limits_.values) fail(object.at, tr("more than {} values", limits_.values));
  if (payload_ > limits_.bytes) fail(object.at, tr("more than {} bytes of values", limits_.bytes));

  if (object.isContainer()) {
    if (path_.size() == limits_.depth) fail(object.at, tr("nested deeper than {}", limits_.depth));
    extent.state = Extent::State::Open;
    path_.push_back({number, object, 0});
  } else {
    scalar(object);
    extent.state = Extent::State::Known;
  }
}

void BinaryCheck::list() {
  trailer();
  extents_.resize(objects_);
  enter(top_);
  while (!path_.empty()) {
    Step& step = path_.back();
    if (step.next == step.object.references()) {
      Extent& done = extents_[step.number];
      done.state = Extent::State::Known;
      ++done.depth;
      path_.pop_back();
      continue;
    }
    const std::size_t child = reference(step.object, step.next);
    const Extent& extent = extents_[child];
    if (extent.state == Extent::State::Open) {
      fail(step.object.at, tr("expected a tree, found a container inside itself"));
    }
    if (extent.state == Extent::State::Unseen) {
      enter(child);  // May move the path; a container comes back to this reference when it is known.
      continue;
    }
    add(step, extent);
    // References to keys come before those to values.
    if (step.object.kind == kDictionary && step.next < step.object.count) key(child);
    ++step.next;
  }
}

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) { return bytes.starts_with("bplist"); }

std::optional<std::string> binaryPropertyListFault(std::string_view bytes, const PropertyListLimits& limits) {
  try {
    BinaryCheck(bytes, limits).list();
    return std::nullopt;
  } catch (const Fault& fault) {
    return tr("byte {0}: {1}", fault.at, fault.text);
  }
}

}  // namespace hushmode::devices
