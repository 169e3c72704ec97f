#include "devices/shared/CalendarContents.h"

#include "devices/shared/ICalReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace hushmode::devices {

namespace {

/// What every series may cost before those that cost more have their turn: a month of a daily rule several times over.
constexpr std::int64_t kWorkAtFirst = 4'096;

constexpr std::size_t kProblemsNamedPerFile = 10;

/// The whole file; absent, and reported, when it cannot be read.
std::optional<std::string> textOfFile(const std::filesystem::path& path, const CalendarContents::Report& report) {
  const auto fail = [&](int error) {
    report(path.string() + ": cannot be read: " + std::strerror(error));
    return std::nullopt;
  };
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
  if (static_cast<std::uint64_t>(status.st_size) > CalendarContents::kLargestFile) {
    report(path.string() + ": has " + std::to_string(status.st_size) + " bytes and is left out: at most " +
           std::to_string(CalendarContents::kLargestFile) + " are read");
    return std::nullopt;
  }
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  std::size_t length = 0;
  while (length < text.size()) {
    const ssize_t count = read(descriptor, text.data() + length, text.size() - length);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return fail(errno);
    if (count == 0) break;
    length += static_cast<std::size_t>(count);
  }
  text.resize(length);
  return text;
}

ICalFile contentOf(const std::filesystem::path& path, ICalZones& zones, const CalendarContents::Report& report) {
  const std::optional<std::string> text = textOfFile(path, report);
  if (!text) return {};
  std::size_t problems = 0;
  ICalFile content =
      readICalFile(*text, path.filename().string(), zones, [&](std::string_view place, const std::string& what) {
        if (++problems > kProblemsNamedPerFile) return;
        const auto line = std::count(text->data(), place.data(), '\n') + 1;
        report(path.string() + ":" + std::to_string(line) + ": " + what);
      });
  if (problems > kProblemsNamedPerFile) {
    report(path.string() + ": " + std::to_string(problems - kProblemsNamedPerFile) + " more such problems");
  }
  return content;
}

}  // namespace

bool CalendarContents::update(const std::vector<CalendarPlace::File>& files, ICalZones& zones, const Report& report) {
  bool changed = files.size() != files_.size();
  std::vector<std::unique_ptr<File>> updated;
  updated.reserve(files.size());
  auto known = files_.begin();
  for (const CalendarPlace::File& place : files) {
    const auto isEarlier = [&](const std::unique_ptr<File>& file) {
      return file->place.path.native() < place.path.native();
    };
    while (known != files_.end() && isEarlier(*known)) ++known;
    const bool same = known != files_.end() && (*known)->place.path == place.path;
    if (same && (*known)->place.signature == place.signature) {
      updated.push_back(std::move(*known++));
      continue;
    }
    changed = true;
    updated.push_back(std::make_unique<File>());
    updated.back()->place = place;
    updated.back()->content = contentOf(place.path, zones, report);
  }
  if (!changed) {
    files_ = std::move(updated);
    return false;
  }
  members_.clear();
  files_ = std::move(updated);
  arrange();
  return true;
}

/// Groups the entries of all files by UID.
void CalendarContents::arrange() {
  struct Entry {
    ICalEntry* entry;
    File* file;
  };
  std::vector<Entry> entries;
  for (const auto& file : files_) {
    for (ICalEntry& entry : file->content.entries) entries.push_back({&entry, file.get()});
  }
  std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.entry->uidHash != b.entry->uidHash ? a.entry->uidHash < b.entry->uidHash : a.entry->uid < b.entry->uid;
  });

  spans_.clear();
  std::vector<ICalEntry*> group;
  for (auto first = entries.begin(); first != entries.end();) {
    auto next = first;
    group.clear();
    for (; next != entries.end() && next->entry->uid == first->entry->uid; ++next) group.push_back(next->entry);
    members_.push_back({ICalSeries(group), first->file});
    const ICalSeries::Extent extent = members_.back().series.extent();
    spans_.add({extent.from, extent.to, static_cast<std::uint32_t>(members_.size() - 1)});
    first = next;
  }
  spans_.order();
}

const std::string& CalendarContents::name() const {
  static const std::string none;
  const auto named =
      std::find_if(files_.begin(), files_.end(), [](const auto& file) { return !file->content.calendarName.empty(); });
  return named == files_.end() ? none : (*named)->content.calendarName;
}

bool CalendarContents::expand(std::int64_t from, std::int64_t to, const TimeZone& local,
                              std::vector<ICalOccurrence>& occurrences) {
  for (const auto& file : files_) {
    file->budget = WorkBudget(kWorkPerFile);
    file->cut = false;
  }
  // One rule without measure must not take away the other events of its file: it comes last.
  std::vector<const Member*> costly;
  spans_.forEachTouching(from, to, [&](std::uint32_t item) {
    const Member& member = members_[item];
    const std::size_t before = occurrences.size();
    WorkBudget budget(std::min(kWorkAtFirst, member.file->budget.left()));
    const std::int64_t allowed = budget.left();
    const bool complete = member.series.expand(from, to, local, budget, occurrences);
    member.file->budget.take(allowed - std::max<std::int64_t>(budget.left(), 0));
    if (complete) return;
    occurrences.resize(before);
    costly.push_back(&member);
  });
  bool complete = true;
  for (const Member* member : costly) {
    if (member->series.expand(from, to, local, member->file->budget, occurrences)) continue;
    member->file->cut = true;
    complete = false;
  }
  return complete;
}

void CalendarContents::reportCuts(const Report& report) {
  for (const auto& file : files_) {
    if (!file->cut || file->cutReported) continue;
    file->cutReported = true;
    report(file->place.path.string() +
           ": has more occurrences, or rules that are more work to follow, than one query allows; some are left out");
  }
}

const ICalSeries* CalendarContents::find(std::string_view uid) const {
  const std::size_t hash = std::hash<std::string_view>()(uid);
  const auto member =
      std::lower_bound(members_.begin(), members_.end(), hash, [&](const Member& candidate, std::size_t) {
        const ICalEntry& entry = candidate.series.anyEntry();
        return entry.uidHash != hash ? entry.uidHash < hash : entry.uid < uid;
      });
  return member != members_.end() && member->series.anyEntry().uid == uid ? &member->series : nullptr;
}

void CalendarContents::forgetDetails() {
  for (const auto& file : files_) {
    for (ICalEntry& entry : file->content.entries) entry.details.reset();
  }
}

}  // namespace hushmode::devices
