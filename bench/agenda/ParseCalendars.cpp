// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <libical/ical.h>
#include <string>

// Nothing but libical: reads and parses each calendar file in a folder, and frees what was parsed.
// usage: bench_parse_calendars FOLDER

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: bench_parse_calendars FOLDER\n", stderr);
    return 2;
  }
  int events = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(arguments[1])) {
    if (!entry.is_regular_file()) continue;
    std::ifstream file(entry.path(), std::ios::binary);
    std::string text(entry.file_size(), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    icalcomponent* component = icalparser_parse_string(text.c_str());
    if (component == nullptr) continue;
    events += icalcomponent_count_components(component, ICAL_VEVENT_COMPONENT);
    icalcomponent_free(component);
  }
  std::printf("%d events\n", events);
  return events > 0 ? 0 : 1;
}
