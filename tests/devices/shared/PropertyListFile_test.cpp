// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/PropertyListFile.h"

#include "devices/shared/PropertyListCodec.h"
#include "devices/shared/PropertyListFileBytes.h"
#include "tests/devices/shared/PropertyListFaults.h"
#include "tests/devices/shared/PropertyListSamples.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using namespace platform;
using namespace faults;
using State = PropertyListFileContent::State;

const Value kOld = Array{"old"};
const Value kNew = samples::everyKind();

TEST(PropertyListFile, ReadsWhatItWrote) {
  const ScratchFolder folder;
  PropertyListFile file(folder / "profiles.plist");
  EXPECT_EQ(file.read().state, State::Missing);
  EXPECT_EQ(file.write(kNew), std::nullopt);
  const auto content = file.read();
  EXPECT_EQ(content.state, State::Read);
  EXPECT_EQ(content.value, kNew);
  EXPECT_EQ(folder.names(), std::vector<std::string>{"profiles.plist"}) << "nothing is left beside it";
}

TEST(PropertyListFile, ReadsBinaryFilesToo) {
  const ScratchFolder folder;
  writeFile(folder / "profiles.plist", samples::everyKindBinary());
  EXPECT_EQ(PropertyListFile(folder / "profiles.plist").read().value, samples::everyKind());
}

TEST(PropertyListFile, TellsAMissingFileFromAnUnreadableOne) {
  const ScratchFolder folder;
  EXPECT_EQ(PropertyListFile(folder / "no-folder/profiles.plist").read().state, State::Missing);
  const struct {
    const char* what;
    std::string content;
    std::string error;
  } cases[] = {
      {"emptied", "", ": line 1: expected <plist>, found the end of the file"},
      {"half written", samples::xml("<array>\n<true/>\n</array>").substr(0, 77),
       ": line 5: expected </array>, found the end of the file"},
      {"of another kind", "profiles = 3\n", ": line 1: expected a tag, found \"profiles\""},
      {"half a binary one", samples::everyKindBinary().substr(0, 60), ": byte 34: expected offsets of 1 to 8 bytes"},
  };
  for (const auto& c : cases) {
    const std::string path = folder / "profiles.plist";
    writeFile(path, c.content);
    const auto content = PropertyListFile(path).read();
    EXPECT_EQ(content.state, State::Unreadable) << c.what;
    EXPECT_EQ(content.error, path + c.error) << c.what;
  }
}

TEST(PropertyListFile, RefusesWhatIsNoFileOrTooLarge) {
  const ScratchFolder folder;
  std::filesystem::create_directory(folder / "folder");
  EXPECT_EQ(PropertyListFile(folder / "folder").read().error, (folder / "folder") + ": expected a regular file");
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(PropertyListFile(folder / "pipe").read().error, (folder / "pipe") + ": expected a regular file");
  writeFile(folder / "large", std::string(1001, ' '));
  EXPECT_EQ(PropertyListFile(folder / "large").read({.bytes = 1000}).error,
            (folder / "large") + ": expected at most 1000 bytes, found more");
  EXPECT_NE(PropertyListFile(folder / "folder").write(kNew), std::nullopt);
  EXPECT_TRUE(std::filesystem::is_directory(folder / "folder"));
}

TEST(PropertyListFile, SaysWhyAFileCannotBeRead) {
  const ScratchFolder folder;
  const std::string path = folder / "profiles.plist";
  writeFile(path, samples::xml("<array/>"));
  const struct {
    const char* call;
    int error;
    std::string text;
  } cases[] = {
      {"open", EACCES, ": cannot open the file: Permission denied"},
      {"fstat", EIO, ": cannot read the file: Input/output error"},
      {"read", EIO, ": cannot read the file: Input/output error"},
  };
  for (const auto& c : cases) {
    FailingCalls calls(c.call, c.error);
    const auto content = PropertyListFile(path, calls).read();
    EXPECT_EQ(content.state, State::Unreadable) << c.call;
    EXPECT_EQ(content.error, path + c.text);
    EXPECT_EQ(calls.openFiles(), 0) << c.call;
  }
}

TEST(PropertyListFile, KeepsModeAndSymbolicLinks) {
  const ScratchFolder folder;
  EXPECT_EQ(PropertyListFile(folder / "new").write(kNew), std::nullopt);
  EXPECT_EQ(modeOf(folder / "new"), 0600U);

  writeFile(folder / "shared", "old", 0664);
  EXPECT_EQ(PropertyListFile(folder / "shared").write(kNew), std::nullopt);
  EXPECT_EQ(modeOf(folder / "shared"), 0664U);

  std::filesystem::create_directory(folder / "dotfiles");
  std::filesystem::create_symlink("dotfiles/second", folder / "first");
  std::filesystem::create_symlink(folder / "dotfiles/real", folder / "dotfiles/second");
  for (int i = 0; i < 2; ++i) {  // First the links dangle.
    EXPECT_EQ(PropertyListFile(folder / "first").write(kNew), std::nullopt);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "first"));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "dotfiles/second"));
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(folder / "dotfiles/real")));
    EXPECT_EQ(PropertyListFile(folder / "first").read().value, kNew);
  }

  std::filesystem::create_symlink("circle", folder / "circle");
  EXPECT_EQ(PropertyListFile(folder / "circle").read().state, State::Unreadable);
  EXPECT_NE(PropertyListFile(folder / "circle").write(kNew), std::nullopt);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "circle"));
}

TEST(PropertyListFile, MakesMissingFoldersForTheUserAlone) {
  const ScratchFolder folder;
  EXPECT_EQ(PropertyListFile(folder / "a/b/profiles.plist").write(kNew), std::nullopt);
  EXPECT_EQ(modeOf(folder / "a/b"), 0700U);
  writeFile(folder / "file", "");
  const auto failure = PropertyListFile(folder / "file/profiles.plist").write(kNew);
  ASSERT_TRUE(failure);
  EXPECT_NE(failure->find("Not a directory"), std::string::npos) << *failure;
}

TEST(PropertyListFile, LeavesTheOldFileWhenACallFails) {
  const struct {
    const char* call;
    int error;
    std::string text;
  } cases[] = {
      {"create", EROFS, "cannot make a new file: Read-only file system"},
      {"create", EEXIST, "cannot make a new file: too many were left behind in the folder"},
      {"write", ENOSPC, "cannot write the new file: No space left on device"},
      {"fstat", EIO, "cannot find out the old file's mode: Input/output error"},
      {"fchmod", EPERM, "cannot set the new file's mode: Operation not permitted"},
      {"fsync", EIO, "cannot sync the new file: Input/output error"},
      {"close", EDQUOT, "cannot close the new file: Disk quota exceeded"},
      {"rename", EACCES, "cannot put the new file in place: Permission denied"},
  };
  for (const auto& c : cases) {
    const ScratchFolder folder;
    const std::string path = folder / "profiles.plist";
    ASSERT_EQ(PropertyListFile(path).write(kOld), std::nullopt);
    FailingCalls calls(c.call, c.error);
    EXPECT_EQ(PropertyListFile(path, calls).write(kNew), path + ": " + c.text);
    EXPECT_EQ(PropertyListFile(path).read().value, kOld) << c.call;
    EXPECT_EQ(folder.names(), std::vector<std::string>{"profiles.plist"}) << c.call;
    EXPECT_EQ(calls.openFiles(), 0) << c.call;
  }
}

TEST(PropertyListFile, SaysWhenTheFolderCannotBeSynced) {
  const ScratchFolder folder;
  const std::string path = folder / "profiles.plist";
  for (const char* call : {"open folder", "fsync folder"}) {
    FailingCalls calls(call, EIO);
    const auto failure = PropertyListFile(path, calls).write(kNew);
    ASSERT_TRUE(failure) << call;
    EXPECT_NE(failure->find("the folder: Input/output error"), std::string::npos) << *failure;
  }
  FailingCalls unable("fsync folder", EINVAL);
  EXPECT_EQ(PropertyListFile(path, unable).write(kNew), std::nullopt) << "a file system that does not sync folders";
}

TEST(PropertyListFile, PassesOverNewFilesThatACrashLeftBehind) {
  const ScratchFolder folder;
  const std::string left = ".hushmode-" + std::to_string(::getpid()) + "-0.new";
  writeFile(folder / left, "left behind");
  EXPECT_EQ(PropertyListFile(folder / "profiles.plist").write(kNew), std::nullopt);
  EXPECT_EQ(PropertyListFile(folder / "profiles.plist").read().value, kNew);
  EXPECT_EQ(contentOf(folder / left), "left behind");
}

TEST(PropertyListFile, HoldsTheOldOrTheNewContentWheneverThePowerGoes) {
  for (const bool existed : {true, false}) {
    bool isCut = true;
    int cuts = 0;
    for (int steps = 1; isCut; ++steps) {
      const ScratchFolder folder;
      const std::string path = folder / "profiles.plist";
      if (existed) {
        ASSERT_EQ(PropertyListFile(path).write(kOld), std::nullopt);
      }
      try {
        CutCalls calls(steps);
        ASSERT_EQ(PropertyListFile(path, calls).write(kNew), std::nullopt);
        isCut = false;
      } catch (const PowerCut&) {
        ++cuts;
      }
      const auto content = PropertyListFile(path).read();
      const bool isNew = content.value == kNew;
      const bool isOld = existed ? content.value == kOld : content.state == State::Missing;
      EXPECT_TRUE(isNew || (isCut && isOld)) << "after step " << steps << ": " << content.error;
      EXPECT_EQ(PropertyListFile(path).write(kNew), std::nullopt) << "what was left behind does no harm";
    }
    EXPECT_GT(cuts, 10) << "many writes, a mode, two syncs, a rename";
  }
}

TEST(PropertyListFile, WritesNothingForAValueThatIsTooDeep) {
  const ScratchFolder folder;
  Value deep = Array();
  for (int i = 0; i < 512; ++i) deep = Array{std::move(deep)};
  EXPECT_NE(PropertyListFile(folder / "profiles.plist").write(deep), std::nullopt);
  EXPECT_TRUE(folder.names().empty());
}

}  // namespace
}  // namespace hushmode::devices
