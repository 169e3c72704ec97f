// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/shared/DiskFiles.h"

#include "devices/shared/DiskDefaults.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

namespace fs = std::filesystem;
using platform::Array;
using platform::Dictionary;

class DiskTest : public ::testing::Test {
 protected:
  DiskTest() {
    std::string name = (fs::temp_directory_path() / "hushmode-XXXXXX").string();
    folder = ::mkdtemp(name.data());
  }
  ~DiskTest() override { fs::remove_all(folder); }

  void put(const std::string& name, const std::string& content) const { std::ofstream(folder / name) << content; }
  std::function<void(const std::string&)> diagnose() {
    return [this](const std::string& line) { told.push_back(line); };
  }

  fs::path folder;
  std::vector<std::string> told;
};

class DiskFilesTest : public DiskTest {
 protected:
  DiskFiles files{"/device/", folder, diagnose()};
};

TEST_F(DiskFilesTest, WhatIsWrittenIsReadBackByItsDevicePath) {
  EXPECT_FALSE(files.fileExists("/device/list.plist"));
  EXPECT_FALSE(files.arrayWithContentsOfFile("/device/list.plist"));
  ASSERT_TRUE(files.writeArrayToFileAtomically({Dictionary{{"title", "Work"}}}, "/device/list.plist"));
  EXPECT_TRUE(files.fileExists("/device/list.plist"));
  EXPECT_TRUE(fs::exists(folder / "list.plist"));
  EXPECT_EQ(files.arrayWithContentsOfFile("/device/list.plist"), (Array{Dictionary{{"title", "Work"}}}));
  EXPECT_TRUE(told.empty());
}

TEST_F(DiskFilesTest, PathsOutsideOfTheFolderDoNotExist) {
  for (const char* path : {"/elsewhere/list.plist", "/device/", "/device/../list.plist", "/device/a/b", "/device/.."}) {
    SCOPED_TRACE(path);
    EXPECT_FALSE(files.diskPath(path));
    EXPECT_FALSE(files.fileExists(path));
    EXPECT_FALSE(files.writeArrayToFileAtomically({}, path));
  }
  EXPECT_EQ(told.size(), 5U);
}

TEST_F(DiskFilesTest, AFileOfAnotherShapeReadsAsNoneAndIsToldOnce) {
  put("list.plist", "<plist version=\"1.0\"><dict><key>a</key><true/></dict></plist>");
  EXPECT_FALSE(files.arrayWithContentsOfFile("/device/list.plist"));
  EXPECT_FALSE(files.arrayWithContentsOfFile("/device/list.plist"));
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told[0].find("list.plist"), std::string::npos);
  EXPECT_NE(told[0].find("expected an array"), std::string::npos);
  EXPECT_EQ(files.dictionaryWithContentsOfFile("/device/list.plist"), (Dictionary{{"a", true}}));
}

TEST_F(DiskFilesTest, AnUnreadableFileIsKeptBesideTheOneThatReplacesIt) {
  put("list.plist", "half a file");
  EXPECT_FALSE(files.arrayWithContentsOfFile("/device/list.plist"));
  ASSERT_TRUE(files.writeArrayToFileAtomically({Dictionary()}, "/device/list.plist"));
  std::ifstream kept(folder / "list.plist.unreadable-1");
  std::string content;
  std::getline(kept, content);
  EXPECT_EQ(content, "half a file");
  EXPECT_NE(told.back().find("list.plist.unreadable-1"), std::string::npos);
  EXPECT_EQ(files.arrayWithContentsOfFile("/device/list.plist"), Array{Dictionary()});
}

TEST_F(DiskFilesTest, AFolderThatCannotBeMadeIsAFailureWithItsReason) {
  put("file", "");
  DiskFiles below("/device/", folder / "file" / "below", diagnose());
  EXPECT_FALSE(below.writeArrayToFileAtomically({}, "/device/list.plist"));
  ASSERT_FALSE(told.empty());
  EXPECT_NE(told.back().find("list.plist"), std::string::npos);
}

class DiskDefaultsTest : public DiskTest {
 protected:
  DiskDefaults open() { return {folder, "com.example.host", diagnose()}; }
};

TEST_F(DiskDefaultsTest, ValuesSurviveTheProcessOnceSynchronized) {
  {
    DiskDefaults defaults = open();
    defaults.setFloat(0.8F, "ringtone");
    defaults.setBool(true, "vibrate");
    EXPECT_FALSE(fs::exists(folder / "com.example.host.plist"));
    defaults.synchronize();
    defaults.setFloat(0.1F, "unsynchronized");
  }
  DiskDefaults defaults = open();
  EXPECT_EQ(defaults.floatForKey("ringtone"), 0.8F);
  EXPECT_TRUE(defaults.boolForKey("vibrate"));
  EXPECT_FALSE(defaults.valueForKey("unsynchronized"));
  defaults.removeObjectForKey("ringtone");
  defaults.synchronize();
  EXPECT_FALSE(open().valueForKey("ringtone"));
  EXPECT_TRUE(told.empty());
}

TEST_F(DiskDefaultsTest, SynchronizingWithoutAChangeDoesNotTouchTheFile) {
  DiskDefaults defaults = open();
  defaults.setBool(true, "a");
  defaults.synchronize();
  fs::remove(folder / "com.example.host.plist");
  defaults.setBool(true, "a");
  defaults.removeObjectForKey("b");
  defaults.synchronize();
  EXPECT_FALSE(fs::exists(folder / "com.example.host.plist"));
}

TEST_F(DiskDefaultsTest, AnotherApplicationsDomainIsAFileOfItsOwnAndWrittenAtOnce) {
  DiskDefaults defaults = open();
  EXPECT_FALSE(defaults.persistentDomainForName("com.example.other"));
  defaults.setPersistentDomain({{"on", true}}, "com.example.other");
  EXPECT_EQ(open().persistentDomainForName("com.example.other"), (Dictionary{{"on", true}}));
}

TEST_F(DiskDefaultsTest, AFileThatCannotBeReadIsLeftAloneAndChangesStayInMemory) {
  put("com.example.host.plist", "not a property list");
  DiskDefaults defaults = open();
  defaults.setBool(true, "a");
  defaults.synchronize();
  EXPECT_TRUE(defaults.boolForKey("a"));
  std::ifstream file(folder / "com.example.host.plist");
  std::string content;
  std::getline(file, content);
  EXPECT_EQ(content, "not a property list");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told[0].find("com.example.host.plist"), std::string::npos);
}

}  // namespace
}  // namespace hushmode::devices
