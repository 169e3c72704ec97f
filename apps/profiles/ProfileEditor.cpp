// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/profiles/ProfileEditor.h"

#include "apps/client/Daemon.h"
#include "apps/client/ProfileStore.h"
#include "apps/profiles/ProfileWords.h"
#include "apps/simulation/JsonReader.h"
#include "apps/words/Words.h"
#include "devices/words/Text.h"
#include "host/ProfileTitle.h"
#include "util/Numbers.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace hushmode::cli {

using platform::Array;
using platform::Dictionary;
using platform::Value;
using simulation::InputError;

namespace {

std::string writtenWindow(const Dictionary& profile) {
  if (booleanMeaning(profile.find("allDay"))) return "all day";
  return textMeaning(profile.find("startTime")).value_or("12:00 AM") + " - " +
         textMeaning(profile.find("endTime")).value_or("12:00 AM");
}

Dictionary readLine(const std::string& word, const std::string& text, const std::vector<KnownCalendar>& calendars) {
  if (word == "title") {
    if (const auto fault = host::titleFault(text)) throw InputError(inWords(*fault));
    return {{"title", text}};
  }
  if (word == "window") {
    if (text == "all day") return {{"allDay", true}};
    const auto [start, end] = parseWindow(text);
    return {{"allDay", false}, {"startTime", start}, {"endTime", end}};
  }
  if (word == "calendars") return {{"calendarIdentifiers", arrayOf(calendarsNamed(splitList(text), calendars))}};
  if (word == "networks") return {{"wifiNetworks", arrayOf(splitList(text))}};
  std::vector<std::string> words{"title", "window", "calendars", "networks"};
  for (const Setting& setting : profileSettings()) {
    if (setting.word == word) return {{std::string(setting.key), parseSetting(setting, text)}};
    words.emplace_back(setting.word);
  }
  const std::string near = simulation::nearestOf(word, words);
  throw InputError(near.empty() ? tr("\"{}\" is no setting", word)
                                : tr("\"{0}\" is no setting; did you mean \"{1}\"?", word, near));
}

std::string lineOf(const std::string& word, const std::string& text) { return word + ": " + text + "\n"; }

std::string contentsOf(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// Lets the user edit `text` in the file. When the editor fails, and not because the user interrupted it, what was
/// written is kept; nothing else is.
void runEditor(const std::filesystem::path& file, const std::string& text) {
  const char* visual = std::getenv("VISUAL");
  const char* editor = visual && *visual ? visual : std::getenv("EDITOR");
  const std::string command = std::string(editor && *editor ? editor : "editor") + " \"$1\"";
  // What Ctrl-C means is the editor's to say.
  const auto interrupted = std::signal(SIGINT, SIG_IGN);
  const auto quitted = std::signal(SIGQUIT, SIG_IGN);
  const pid_t child = ::fork();
  if (child < 0) throw ServiceError(tr("the editor could not be started"));
  if (child == 0) {
    std::signal(SIGINT, interrupted);
    std::signal(SIGQUIT, quitted);
    // Through the shell, as everybody does it: the variable may hold options.
    ::execl("/bin/sh", "sh", "-c", command.c_str(), "sh", file.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  int status = 0;
  while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  const bool interruptedByUser = WIFSIGNALED(status) && WTERMSIG(status) == SIGINT;
  const std::string written = contentsOf(file);
  const bool isKept = status != 0 && !interruptedByUser && !written.empty() && written != text;
  if (status != 0 && !isKept) std::filesystem::remove(file);
  std::signal(SIGINT, interrupted);
  std::signal(SIGQUIT, quitted);
  if (status == 0) return;
  // The shell that ran us is to know that it was the user.
  if (interruptedByUser) std::raise(SIGINT);
  throw ServiceError(
      isKept ? tr("the editor did not end well; nothing was changed, and your text is kept in {}", file.string())
             : tr("the editor did not end well; nothing was changed"));
}

}  // namespace

std::string editorText(const Dictionary& profile, const std::vector<KnownCalendar>& calendars) {
  std::vector<std::string> titles;
  for (const std::string& each : textsOf(profile.find("calendarIdentifiers"))) {
    titles.push_back(calendarTitle(each, calendars));
  }
  std::string text =
      "# " +
      tr("A setting a line. Lines that begin with # do not count; close without saving to leave all as it was.") + "\n";
  text += lineOf("title", titleOf(profile)) + lineOf("window", writtenWindow(profile)) +
          lineOf("calendars", joined(titles)) + lineOf("networks", joined(textsOf(profile.find("wifiNetworks"))));
  for (const Setting& setting : profileSettings()) {
    text += "# " + std::string(tr(setting.help)) + "\n" +
            lineOf(std::string(setting.word), writtenSetting(setting, profile));
  }
  return text;
}

Dictionary changesInText(const std::string& text, const Dictionary& profile,
                         const std::vector<KnownCalendar>& calendars) {
  std::istringstream before(editorText(profile, calendars)), after(text);
  std::vector<std::string> known;
  for (std::string line; std::getline(before, line);) known.push_back(line);
  Dictionary changes;
  int number = 0;
  for (std::string line; std::getline(after, line);) {
    ++number;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const bool isBlank = line.find_first_not_of(" \t") == std::string::npos;
    if (isBlank || line[0] == '#' || std::find(known.begin(), known.end(), line) != known.end()) continue;
    const auto colon = line.find(':');
    try {
      if (colon == std::string::npos) throw InputError(tr("expected a setting such as \"ringtone: 5%\""));
      std::string value = line.substr(colon + 1);
      value.erase(0, value.find_first_not_of(" \t"));
      value.erase(value.find_last_not_of(" \t") + 1);
      for (const auto& [key, each] : readLine(line.substr(0, colon), value, calendars)) changes.set(key, each);
    } catch (const InputError& mistake) {
      throw InputError(tr("line {0}: {1}", number, mistake.what()));
    }
  }
  return changes;
}

Dictionary editedInEditor(const Dictionary& profile, const std::vector<KnownCalendar>& calendars) {
  std::string name = (std::filesystem::temp_directory_path() / "hushmode-profile-XXXXXX").string();
  const int descriptor = ::mkstemp(name.data());
  if (descriptor < 0)
    throw ServiceError(
        tr("no file for the editor could be made in {}", std::filesystem::temp_directory_path().string()));
  ::close(descriptor);
  const std::string text = editorText(profile, calendars);
  if (std::ofstream file(name); !(file << text).flush()) {
    std::filesystem::remove(name);
    throw ServiceError(tr("{0} cannot be written: {1}", name, std::strerror(errno)));
  }
  runEditor(name, text);
  try {
    const Dictionary changes = changesInText(contentsOf(name), profile, calendars);
    std::filesystem::remove(name);
    return changes;
  } catch (const InputError& mistake) {
    throw InputError(tr("{0}; nothing was changed, and your text is kept in {1}", mistake.what(), name));
  }
}

}  // namespace hushmode::cli
