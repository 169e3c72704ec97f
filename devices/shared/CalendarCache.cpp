// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarCache.h"

#include "devices/shared/PropertyListFileBytes.h"

#include <array>
#include <bit>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/file.h>
#include <sys/stat.h>
#include <type_traits>
#include <unistd.h>
#include <xxhash.h>

namespace hushmode::devices {

namespace {

/// The file: this, then the key, the span, and the lists, each after its number. In the machine's own byte order.
struct Header {
  std::array<char, 8> magic;
  std::uint64_t hash;  ///< Of all that follows the header.
  std::uint64_t size;  ///< The same's length in bytes.
};
constexpr std::array<char, 8> kMagic{'H', 'M', 'c', 'a', 'l', std::endian::native == std::endian::little ? 'l' : 'b',
                                     '0', '1'};
/// More than any phone's calendars need.
constexpr std::uint64_t kLargestFile = 256U << 20;

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  explicit operator bool() const { return number_ >= 0; }
  int number() const { return number_; }

 private:
  int number_;
};

class Packer {
 public:
  template <class T>
  void add(const T& value) {
    static_assert(std::has_unique_object_representations_v<T>, "padding would make the bytes differ");
    bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  template <class List>
  void addList(const List& list) {
    static_assert(std::has_unique_object_representations_v<typename List::value_type>);
    add(static_cast<std::uint64_t>(list.size()));
    bytes_.append(reinterpret_cast<const char*>(list.data()), list.size() * sizeof(typename List::value_type));
  }
  const std::string& bytes() const { return bytes_; }

 private:
  std::string bytes_;
};

/// Reads what a packer wrote; each call answers whether there was enough.
class Unpacker {
 public:
  explicit Unpacker(std::string_view bytes) : rest_(bytes) {}

  template <class T>
  bool take(T& value) {
    if (rest_.size() < sizeof value) return false;
    std::memcpy(&value, rest_.data(), sizeof value);
    rest_.remove_prefix(sizeof value);
    return true;
  }
  template <class List>
  bool takeList(List& list) {
    using Element = typename List::value_type;
    std::uint64_t count = 0;
    if (!take(count) || count > rest_.size() / sizeof(Element)) return false;
    list.resize(count);
    if (count > 0) std::memcpy(list.data(), rest_.data(), count * sizeof(Element));
    rest_.remove_prefix(count * sizeof(Element));
    return true;
  }
  bool isAtEnd() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

bool isPart(std::uint64_t first, std::uint64_t count, std::size_t whole) { return first + count <= whole; }

/// Whether every index in it leads somewhere.
bool isConsistent(const CalendarCache& cache) {
  const auto isText = [&](CalendarCache::Text text) { return isPart(text.offset, text.length, cache.texts.size()); };
  for (const auto& each : cache.calendars) {
    if (!isText(each.identifier) || !isPart(each.firstFile, each.files, cache.files.size()) ||
        !isPart(each.firstOccurrence, each.occurrences, cache.occurrences.size())) {
      return false;
    }
  }
  for (const auto& each : cache.files) {
    if (!isText(each.path) || !isText(each.calendarName) || !isText(each.problems) ||
        !isPart(each.firstUid, each.uids, cache.uids.size())) {
      return false;
    }
  }
  for (const auto& each : cache.occurrences) {
    if (!isText(each.title) || !isText(each.uid) || each.file >= cache.files.size() || each.status > 3) return false;
  }
  return true;
}

bool writeWhole(int file, const char* bytes, std::size_t size) {
  while (size > 0) {
    const ssize_t count = ::write(file, bytes, size);
    if (count <= 0) return false;
    bytes += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

/// Whether no other process writes this file now, nor has given it its final name meanwhile.
bool isAlone(int file, const std::string& path) {
  struct stat opened {
  }, named{};
  return ::flock(file, LOCK_EX | LOCK_NB) == 0 && ::fstat(file, &opened) == 0 && ::stat(path.c_str(), &named) == 0 &&
         opened.st_ino == named.st_ino;
}

}  // namespace

CalendarCache::Text CalendarCache::keep(std::string_view text) {
  const Text kept{static_cast<std::uint32_t>(texts.size()), static_cast<std::uint32_t>(text.size())};
  texts += text;
  return kept;
}

std::optional<CalendarCache> CalendarCache::load(const std::filesystem::path& path, std::string_view key) {
  const FileBytes file = readFileBytes(FileCalls::system(), path.string(), sizeof(Header) + kLargestFile);
  Header header{};
  if (file.bytes.size() < sizeof header) return std::nullopt;
  std::memcpy(&header, file.bytes.data(), sizeof header);
  const std::string_view bytes = std::string_view(file.bytes).substr(sizeof header);
  if (header.magic != kMagic || header.size != bytes.size() || XXH3_64bits(bytes.data(), bytes.size()) != header.hash) {
    return std::nullopt;
  }

  CalendarCache cache;
  std::string ownKey;
  Unpacker unpacker(bytes);
  if (!unpacker.takeList(ownKey) || ownKey != key) return std::nullopt;
  const bool whole = unpacker.take(cache.from) && unpacker.take(cache.to) && unpacker.takeList(cache.calendars) &&
                     unpacker.takeList(cache.files) && unpacker.takeList(cache.occurrences) &&
                     unpacker.takeList(cache.uids) && unpacker.takeList(cache.texts) && unpacker.isAtEnd();
  return whole && isConsistent(cache) ? std::optional(std::move(cache)) : std::nullopt;
}

bool CalendarCache::save(const std::filesystem::path& path, std::string_view key) const {
  Packer packer;
  packer.addList(key);
  packer.add(from);
  packer.add(to);
  packer.addList(calendars);
  packer.addList(files);
  packer.addList(occurrences);
  packer.addList(uids);
  packer.addList(texts);
  const std::string& bytes = packer.bytes();
  if (bytes.size() > kLargestFile || texts.size() > std::numeric_limits<std::uint32_t>::max()) return false;

  std::error_code unmade;  // Then opening fails.
  std::filesystem::create_directories(path.parent_path(), unmade);
  // Always of the same name, so that what an interrupted writer leaves is the next one's to write. The titles of events
  // are nobody else's business: mode 0600.
  const std::string temporary = path.string() + ".new";
  const Descriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
  if (!file || !isAlone(file.number(), temporary) || ::ftruncate(file.number(), 0) != 0) return false;
  const Header header{kMagic, XXH3_64bits(bytes.data(), bytes.size()), bytes.size()};
  // Not synced: what a loss of power leaves of it does not fit its hash.
  const bool written = writeWhole(file.number(), reinterpret_cast<const char*>(&header), sizeof header) &&
                       writeWhole(file.number(), bytes.data(), bytes.size());
  if (written && ::rename(temporary.c_str(), path.c_str()) == 0) return true;
  ::unlink(temporary.c_str());
  return false;
}

}  // namespace hushmode::devices
