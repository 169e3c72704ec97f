// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/CalendarLayout.h"

#include "devices/words/Text.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <utility>

namespace hushmode::devices {

namespace {

namespace fs = std::filesystem;
using Report = std::function<void(const std::string&)>;

constexpr std::string_view kSuffix = ".ics";
constexpr std::string_view kDisplayNameFile = "displayname";
constexpr std::size_t kLongestDisplayName = 1024;
constexpr std::string_view kColorFile = "color";

/// A folder's identity, by which loops of symbolic links are known.
struct FolderIdentity {
  dev_t device;
  ino_t inode;
  bool operator==(const FolderIdentity&) const = default;
};

/// What lies directly in a folder, ordered by name; hidden and other files left out.
struct Listing {
  std::vector<CalendarPlace::File> calendarFiles;
  std::vector<std::string> folders;
  bool hasDisplayName = false, hasColor = false;

  /// A name or a color says that it is a calendar, though perhaps an empty one.
  bool holdsCalendar() const { return hasDisplayName || hasColor || !calendarFiles.empty(); }
};

/// A name in a folder, and what was found under it.
struct Entry {
  std::string path;
  CalendarFileSignature signature;
  mode_t mode = 0;
  int error = 0;
};

CalendarFileSignature signatureOf(const struct stat& status) {
  return {status.st_ino, static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

/// `nameAt` is where in their paths the names begin.
void lookAt(int folder, std::size_t nameAt, std::span<Entry> entries) {
  for (Entry& each : entries) {
    struct stat status {};
    if (fstatat(folder, each.path.c_str() + nameAt, &status, 0) != 0) {
      each.error = errno;
      continue;
    }
    each.signature = signatureOf(status);
    each.mode = status.st_mode;
  }
}

/// The same, shared out among threads where it is worth that: most of the time to look at a large calendar goes into
/// these calls.
void lookAtAll(int folder, std::size_t nameAt, std::span<Entry> entries) {
  constexpr std::size_t kWorthAThread = 2'000, kMostThreads = 4;
  const std::size_t shares = std::clamp<std::size_t>(
      std::min<std::size_t>(entries.size() / kWorthAThread, std::thread::hardware_concurrency()), 1, kMostThreads);
  std::vector<std::jthread> threads;
  for (std::size_t share = 1; share < shares; ++share) {
    const std::size_t first = entries.size() * share / shares, last = entries.size() * (share + 1) / shares;
    const auto part = entries.subspan(first, last - first);
    try {
      threads.emplace_back([=] { lookAt(folder, nameAt, part); });
    } catch (const std::system_error&) {
      lookAt(folder, nameAt, part);  // No thread to be had.
    }
  }
  lookAt(folder, nameAt, entries.first(entries.size() / shares));
}

/// Root may write everything: what has no write permission for anybody is read-only even so.
bool isWritable(const fs::path& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return false;
  return (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0 && access(path.c_str(), W_OK) == 0;
}

std::string trimmed(const std::string& text) {
  constexpr std::string_view kSpace = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kSpace);
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

std::string displayNameIn(const fs::path& folder) {
  std::ifstream file(folder / kDisplayNameFile, std::ios::binary);
  std::string text(kLongestDisplayName, '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return trimmed(text);
}

class Scan {
 public:
  Scan(const fs::path& root, const Report& report) : root_(root), report_(report) {}

  std::vector<CalendarPlace> places() {
    std::error_code error;
    if (!fs::exists(root_, error) && !error) return {};
    const std::optional<Listing> listing = list(root_);
    if (!listing) return {};
    addFiles(root_, *listing);
    for (const std::string& name : listing->folders) addFolder(root_ / name);
    std::sort(places_.begin(), places_.end(),
              [](const CalendarPlace& a, const CalendarPlace& b) { return a.identifier < b.identifier; });
    return std::move(places_);
  }

 private:
  /// A folder in the root: an account or a calendar.
  void addFolder(const fs::path& folder) {
    std::optional<Listing> listing = list(folder);
    if (!listing) return;
    bool isAccount = false;
    for (const std::string& name : listing->folders) {
      std::optional<Listing> inner = list(folder / name);
      if (!inner) continue;
      around_.pop_back();
      if (!inner->holdsCalendar()) continue;
      addCalendar(folder / name, std::move(*inner));
      isAccount = true;
    }
    around_.pop_back();
    if (isAccount) {
      addFiles(folder, *listing);
    } else if (listing->holdsCalendar()) {
      addCalendar(folder, std::move(*listing));
    }
  }

  void addCalendar(const fs::path& folder, Listing listing) {
    const std::string displayName = listing.hasDisplayName ? displayNameIn(folder) : "";
    places_.push_back({identifierOf(folder), titleOf(folder.parent_path()), displayName, folder.filename().string(),
                       isWritable(folder), std::move(listing.calendarFiles)});
  }

  /// Each file that lies in the root or in an account is a calendar.
  void addFiles(const fs::path& folder, const Listing& listing) {
    for (const CalendarPlace::File& file : listing.calendarFiles) {
      places_.push_back({identifierOf(file.path),
                         titleOf(folder),
                         "",
                         fs::path(file.path).stem().string(),
                         isWritable(file.path),
                         {file}});
    }
  }

  /// What lies in the folder, which is then the innermost that the scan is in; absent, and reported, when it cannot be
  /// looked into.
  std::optional<Listing> list(const fs::path& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> open(opendir(folder.c_str()), closedir);
    struct stat self {};
    if (!open || fstat(dirfd(open.get()), &self) != 0) {
      reportError(folder, errno);
      return std::nullopt;
    }
    const FolderIdentity identity{self.st_dev, self.st_ino};
    if (std::find(around_.begin(), around_.end(), identity) != around_.end()) {
      report_(tr("{}: leads back to a folder around it and is left out", folder.string()));
      return std::nullopt;
    }
    around_.push_back(identity);
    Listing listing;
    std::vector<Entry> entries;
    while (const dirent* entry = readdir(open.get())) {
      if (entry->d_name[0] != '.') entries.push_back({folder.native() + '/' + entry->d_name, {}});
    }
    const std::size_t nameAt = folder.native().size() + 1;
    lookAtAll(dirfd(open.get()), nameAt, entries);
    for (Entry& each : entries) addEntry(std::move(each), nameAt, listing);
    // What comes before the name is the same for all: ten thousand files are looked at in each call of some programs.
    std::sort(listing.calendarFiles.begin(), listing.calendarFiles.end(), [nameAt](const auto& a, const auto& b) {
      return std::string_view(a.path).substr(nameAt) < std::string_view(b.path).substr(nameAt);
    });
    std::sort(listing.folders.begin(), listing.folders.end());
    return listing;
  }

  void addEntry(Entry entry, std::size_t nameAt, Listing& listing) {
    const std::string_view name = std::string_view(entry.path).substr(nameAt);
    if (entry.error != 0) {
      // A name may vanish between the listing and the look at it; a link that leads nowhere stays.
      if (entry.error != ENOENT) reportError(entry.path, entry.error);
    } else if (S_ISDIR(entry.mode)) {
      listing.folders.emplace_back(name);
    } else if (S_ISREG(entry.mode) && name.ends_with(kSuffix)) {
      listing.calendarFiles.push_back({std::move(entry.path), entry.signature});
    } else if (S_ISREG(entry.mode)) {
      listing.hasDisplayName = listing.hasDisplayName || name == kDisplayNameFile;
      listing.hasColor = listing.hasColor || name == kColorFile;
    }
  }

  std::string identifierOf(const fs::path& path) const { return path.lexically_relative(root_).generic_string(); }

  static std::string titleOf(const fs::path& folder) { return folder.filename().string(); }

  void reportError(const fs::path& path, int error) const {
    report_(tr("{0}: cannot be looked into: {1}", path.string(), std::strerror(error)));
  }

  fs::path root_;
  const Report& report_;
  std::vector<FolderIdentity> around_;  ///< The folders that the scan is in.
  std::vector<CalendarPlace> places_;
};

}  // namespace

std::vector<CalendarPlace> calendarPlaces(const fs::path& root, const Report& report) {
  fs::path clean = root.lexically_normal();
  if (!clean.has_filename()) clean = clean.parent_path();
  return Scan(clean, report).places();
}

}  // namespace hushmode::devices
