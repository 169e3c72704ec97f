// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/GuardedPropertyListFile.h"

#include "devices/shared/PropertyListFile.h"
#include "tests/devices/shared/PropertyListFaults.h"
#include "tests/devices/shared/PropertyListSamples.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using namespace platform;
using namespace faults;
using Names = std::vector<std::string>;

const Array kNew{"new"};

/// A guarded file with what it says, in a folder of its own.
struct Guarded {
  explicit Guarded(FileCalls& calls = FileCalls::system())
      : file(
            path, [this](const std::string& line) { lines.push_back(line); }, calls) {}

  bool holdsNew() const { return PropertyListFile(path).read().value == Value(kNew); }

  const ScratchFolder folder;
  const std::string path = folder / "profiles.plist";
  std::vector<std::string> lines;
  GuardedPropertyListFile file;
};

TEST(GuardedPropertyListFile, ReplacesAnArrayWithoutACopy) {
  Guarded guarded;
  EXPECT_EQ(guarded.file.write(kNew), std::nullopt) << "of a missing file";
  EXPECT_EQ(guarded.file.write({}), std::nullopt) << "of what it wrote itself";
  writeFile(guarded.path, samples::everyKindBinary());
  EXPECT_EQ(guarded.file.write(kNew), std::nullopt) << "of what another program wrote";
  EXPECT_TRUE(guarded.holdsNew());
  EXPECT_EQ(guarded.folder.names(), Names{"profiles.plist"});
  EXPECT_TRUE(guarded.lines.empty());
}

TEST(GuardedPropertyListFile, KeepsWhatCannotBeReadAsAnArray) {
  const std::string whole = samples::xml("<array>\n<string>precious</string>\n</array>");
  const struct {
    const char* what;
    std::string content;
    std::string reason;
  } cases[] = {
      {"emptied", "", "line 1: expected <plist>, found the end of the file"},
      {"half written", whole.substr(0, 85), "line 4: expected </string>, found the end of the file"},
      {"without its last line", whole.substr(0, whole.size() - 10),
       "line 5: expected </plist>, found the end of the file"},
      {"a dictionary", samples::xml("<dict/>"), "expected an array, found another value"},
      {"with a slip of the hand", samples::xml("<array>\n<integer>3O</integer>\n</array>"),
       "line 4: expected a whole number of 64 bits without leading zeros, found \"3O\""},
  };
  for (const auto& c : cases) {
    Guarded guarded;
    writeFile(guarded.path, c.content, 0640);
    EXPECT_EQ(guarded.file.write(kNew), std::nullopt) << c.what;
    EXPECT_TRUE(guarded.holdsNew()) << c.what;
    const std::string copy = guarded.path + ".unreadable-1";
    EXPECT_EQ(contentOf(copy), c.content) << c.what;
    EXPECT_EQ(modeOf(copy), 0640U) << c.what;
    ASSERT_EQ(guarded.lines.size(), 1U) << c.what;
    EXPECT_EQ(guarded.lines[0],
              guarded.path + " cannot be read (" + c.reason + "); before it is replaced, it is kept as " + copy);
  }
}

TEST(GuardedPropertyListFile, NumbersTheCopies) {
  Guarded guarded;
  for (const char* content : {"first", "second", "third"}) {
    writeFile(guarded.path, content);
    EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
  }
  std::filesystem::remove(guarded.path + ".unreadable-2");
  writeFile(guarded.path, "fourth");
  EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
  EXPECT_EQ(contentOf(guarded.path + ".unreadable-1"), "first");
  EXPECT_EQ(contentOf(guarded.path + ".unreadable-2"), "fourth") << "the first number that is free";
  EXPECT_EQ(contentOf(guarded.path + ".unreadable-3"), "third");
}

TEST(GuardedPropertyListFile, KeepsTheSameContentOnce) {
  Guarded guarded;
  for (int i = 0; i < 3; ++i) {
    writeFile(guarded.path, "the same");
    EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
  }
  EXPECT_EQ(guarded.folder.names(), (Names{"profiles.plist", "profiles.plist.unreadable-1"}));
  EXPECT_EQ(guarded.lines.size(), 3U) << "it says so each time";
}

TEST(GuardedPropertyListFile, KeepsAFileThatCannotBeReadAtAll) {
  FailingCalls calls("read", EIO);
  Guarded guarded(calls);
  writeFile(guarded.path, "on a bad disk");
  EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
  EXPECT_TRUE(guarded.holdsNew());
  EXPECT_EQ(contentOf(guarded.path + ".unreadable-1"), "on a bad disk");
  EXPECT_NE(guarded.lines.at(0).find("cannot read the file: Input/output error"), std::string::npos);
}

TEST(GuardedPropertyListFile, MakesACopyOfTheBytesWhereLinksAreNotPossible) {
  FailingCalls calls("link", EPERM);
  Guarded guarded(calls);
  writeFile(guarded.path, "on a memory card", 0644);
  EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
  EXPECT_TRUE(guarded.holdsNew());
  EXPECT_EQ(contentOf(guarded.path + ".unreadable-1"), "on a memory card");
  EXPECT_EQ(modeOf(guarded.path + ".unreadable-1"), 0644U);
}

TEST(GuardedPropertyListFile, LeavesTheFileWhenItCannotKeepACopy) {
  const struct {
    const char* call;
    int error;
    const char* text;
  } cases[] = {
      {"link", ENOSPC, ": cannot keep a copy of what is unreadable in it: No space left on device"},
      {"link", EACCES, ": cannot keep a copy of what is unreadable in it: Permission denied"},
      {"fsync folder", EIO, ": cannot sync the folder: Input/output error"},
  };
  for (const auto& c : cases) {
    FailingCalls calls(c.call, c.error);
    Guarded guarded(calls);
    writeFile(guarded.path, "precious");
    EXPECT_EQ(guarded.file.write(kNew), guarded.path + c.text);
    EXPECT_EQ(contentOf(guarded.path), "precious") << c.call;
    EXPECT_TRUE(guarded.lines.empty()) << c.call;
    EXPECT_EQ(calls.openFiles(), 0) << c.call;
  }
}

TEST(GuardedPropertyListFile, KeepsOneCopyAlsoWhenTheSaveFailsAgainAndAgain) {
  struct Calls : FailingCalls {
    explicit Calls(bool isReadable) : FailingCalls(isReadable ? "rename" : "read", EACCES) {}
    int rename(const char*, const char*) override { return errno = EACCES, -1; }
  };
  for (const bool isReadable : {true, false}) {
    Calls calls(isReadable);
    Guarded guarded(calls);
    writeFile(guarded.path, "precious");
    for (int i = 0; i < 3; ++i) EXPECT_NE(guarded.file.write(kNew), std::nullopt);
    EXPECT_EQ(guarded.folder.names(), (Names{"profiles.plist", "profiles.plist.unreadable-1"}));
    EXPECT_EQ(contentOf(guarded.path), "precious");
  }
}

TEST(GuardedPropertyListFile, ChecksTheFileAgainWhenSomebodyElseChangedIt) {
  Guarded guarded;
  EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
  const std::string good = contentOf(guarded.path);
  writeFile(guarded.path, good.substr(0, good.size() - 1) + "x");
  EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
  EXPECT_EQ(guarded.lines.size(), 1U);
}

TEST(GuardedPropertyListFile, KeepsTheCopyBesideTheFileThatALinkLeadsTo) {
  Guarded guarded;
  std::filesystem::create_directory(guarded.folder / "dotfiles");
  writeFile(guarded.folder / "dotfiles/real", "precious");
  std::filesystem::create_symlink("dotfiles/real", guarded.path);
  EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
  EXPECT_TRUE(std::filesystem::is_symlink(guarded.path));
  EXPECT_TRUE(guarded.holdsNew());
  EXPECT_EQ(contentOf(guarded.folder / "dotfiles/real.unreadable-1"), "precious");
}

TEST(GuardedPropertyListFile, LosesNothingWheneverThePowerGoes) {
  for (const int linkError : {0, EPERM}) {
    bool isCut = true;
    for (int steps = 1; isCut; ++steps) {
      struct Calls : CutCalls {
        using CutCalls::CutCalls;
        int link(const char* existing, const char* path) override {
          if (error) return errno = error, -1;
          return CutCalls::link(existing, path);
        }
        int error = 0;
      } calls(steps);
      calls.error = linkError;
      Guarded guarded(calls);
      writeFile(guarded.path, "precious");
      try {
        EXPECT_EQ(guarded.file.write(kNew), std::nullopt);
        isCut = false;
      } catch (const PowerCut&) {
      }
      const bool isKept = contentOf(guarded.path + ".unreadable-1") == "precious";
      EXPECT_TRUE(contentOf(guarded.path) == "precious" || (guarded.holdsNew() && isKept)) << "after step " << steps;
    }
  }
}

}  // namespace
}  // namespace hushmode::devices
