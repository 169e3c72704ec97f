// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarFiles.h"

#include "devices/shared/ICalReader.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr std::size_t kProblemsNamedPerFile = 10;

std::string_view nameIn(std::string_view path) { return path.substr(path.rfind('/') + 1); }

/// A file's text, or why there is none.
struct FileText {
  std::string text, obstacle;
};

FileText textOfFile(const std::string& path) {
  const auto fail = [](int error) { return FileText{{}, tr("cannot be read: {}", std::strerror(error))}; };
  // Not to wait for a writer, should it have become a pipe.
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) return fail(errno);
  struct Closer {
    int descriptor;
    ~Closer() { close(descriptor); }
  } const closer{descriptor};
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return fail(errno);
  if (!S_ISREG(status.st_mode)) return fail(EINVAL);
  if (static_cast<std::uint64_t>(status.st_size) > CalendarFiles::kLargestFile) {
    return {{}, tr("has {0} bytes and is left out: at most {1} are read", status.st_size, CalendarFiles::kLargestFile)};
  }
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t length = 0;
  while (length < text.size()) {
    const ssize_t count = ::read(descriptor, text.data() + length, text.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return fail(errno);
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
  }
  text.resize(length);
  return {std::move(text), {}};
}

}  // namespace

bool CalendarFiles::update(const std::vector<CalendarPlace::File>& files, CalendarContents& contents, ICalZones& zones,
                           const Report& report) {
  bool changed = false;
  std::map<std::string, Known, std::less<>> updated;
  for (const CalendarPlace::File& file : files) {
    auto node = known_.extract(file.path);
    const bool isNew = node.empty();
    const auto place =
        isNew ? updated.try_emplace(updated.end(), file.path) : updated.insert(updated.end(), std::move(node));
    Known& known = place->second;
    // What could not be opened is tried again: permissions are no part of the signature.
    if (!isNew && !known.isUnreadable && known.signature == file.signature) continue;
    changed = read(file, known, contents, zones, report) || changed;
  }
  for (const auto& [path, known] : known_) changed = contents.remove(path) || changed;
  known_ = std::move(updated);
  return changed;
}

bool CalendarFiles::read(const CalendarPlace::File& file, Known& known, CalendarContents& contents, ICalZones& zones,
                         const Report& report) {
  const std::string& path = file.path;
  known.signature = file.signature;
  const FileText found = textOfFile(path);
  known.isUnreadable = !found.obstacle.empty();
  const auto keep = [&](const std::string& obstacle) {
    if (known.obstacle != obstacle) {
      report(contents.has(path) ? tr("{0}: {1}; what it held before is kept", path, obstacle) : path + ": " + obstacle);
    }
    known.obstacle = obstacle;
    return false;
  };
  if (known.isUnreadable) return keep(found.obstacle);
  if (contents.has(path) && known.taken == file.signature) {
    known.obstacle.clear();
    return false;
  }

  std::vector<std::string> problems;
  std::size_t moreProblems = 0;
  ICalFile content =
      readICalFile(found.text, nameIn(file.path), zones, [&](std::string_view place, const std::string& what) {
        if (problems.size() == kProblemsNamedPerFile) {
          ++moreProblems;
          return;
        }
        const auto line = std::count(found.text.data(), place.data(), '\n') + 1;
        problems.push_back(path + ":" + std::to_string(line) + ": " + what);
      });
  if (known.takenWhole && !content.whole) return keep(tr("is not a whole calendar, but perhaps half-written"));
  known.obstacle.clear();
  known.taken = file.signature;
  known.takenWhole = content.whole;
  for (const std::string& problem : problems) report(problem);
  if (moreProblems > 0)
    report(trCount("{1}: {0} more such problem", "{1}: {0} more such problems", moreProblems, path));
  contents.put(path, std::move(content));
  return true;
}

}  // namespace hushmode::devices
