// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/LocalZone.h"

#include "tests/devices/linux/core/MainContext.h"
#include "tests/devices/linux/core/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <vector>

namespace hushmode::devices {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

class LocalZoneTest : public ::testing::Test {
 protected:
  LocalZoneTest() {
    if (const char* held = ::getenv("TZ")) variable = held;
    ::unsetenv("TZ");
  }
  ~LocalZoneTest() override { variable ? ::setenv("TZ", variable->c_str(), 1) : ::unsetenv("TZ"); }

  void link(const std::string& target) const { fs::create_symlink(target, places.link); }
  std::unique_ptr<LocalZone> make() {
    return std::make_unique<LocalZone>([this](const std::string& line) { told.push_back(line); }, [this] { ++changes; },
                                       places);
  }
  std::string name() { return make()->zone()->name(); }

  TemporaryFolder folder;
  LocalZone::Places places{folder.path() / "localtime", folder.path() / "timezone"};
  std::optional<std::string> variable;
  Texts told;
  int changes = 0;
};

TEST_F(LocalZoneTest, IsUtcWhereNothingSaysOtherwise) {
  EXPECT_EQ(name(), "UTC");
  EXPECT_EQ(told, Texts());
}

TEST_F(LocalZoneTest, IsWhatTheLinkLeadsTo) {
  for (const char* target : {"/usr/share/zoneinfo/Europe/Berlin", "../usr/share/zoneinfo/Europe/Berlin",
                             "/usr/share/zoneinfo/posix/Europe/Berlin", "/opt/zoneinfo/right/Europe/Berlin"}) {
    SCOPED_TRACE(target);
    link(target);
    EXPECT_EQ(name(), "Europe/Berlin");
    fs::remove(places.link);
  }
}

TEST_F(LocalZoneTest, IsWhatTheNameSaysWhereThereIsNoLink) {
  folder.put("timezone", "Asia/Tokyo\n");
  EXPECT_EQ(name(), "Asia/Tokyo");
  folder.put("localtime", "TZif2");
  EXPECT_EQ(name(), "Asia/Tokyo") << "a copy of a zone does not say which";
  fs::remove(places.link);
  link("/usr/share/zoneinfo/Europe/Berlin");
  EXPECT_EQ(name(), "Europe/Berlin");
}

TEST_F(LocalZoneTest, IsWhatTheVariableSaysBeforeAllElse) {
  link("/usr/share/zoneinfo/Europe/Berlin");
  const struct {
    const char* variable;
    const char* zone;
    std::size_t lines;
  } cases[] = {{"Asia/Tokyo", "Asia/Tokyo", 0},
               {":Asia/Tokyo", "Asia/Tokyo", 0},
               {":/usr/share/zoneinfo/Asia/Tokyo", "Asia/Tokyo", 0},
               {"", "UTC", 0},
               {":", "UTC", 0},
               {"UTC", "UTC", 0},
               {"Nowhere/Land", "Europe/Berlin", 1}};
  for (const auto& each : cases) {
    SCOPED_TRACE(each.variable);
    told.clear();
    ::setenv("TZ", each.variable, 1);
    EXPECT_EQ(name(), each.zone);
    EXPECT_EQ(told.size(), each.lines);
  }
}

TEST_F(LocalZoneTest, SaysWhichZoneTheSystemDoesNotKnow) {
  link("/usr/share/zoneinfo/Nowhere/Land");
  EXPECT_EQ(name(), "UTC");
  EXPECT_EQ(told, Texts{"the system knows no time zone \"Nowhere/Land\", which " + places.link.string() + " names"});
}

TEST_F(LocalZoneTest, FollowsTheLink) {
  link("/usr/share/zoneinfo/Europe/Berlin");
  const auto zone = make();
  // As the system's tools do it: another link, moved into the place of the old one.
  fs::create_symlink("/usr/share/zoneinfo/Asia/Tokyo", folder.path() / "new");
  fs::rename(folder.path() / "new", places.link);
  runMainContextUntil([&] { return changes > 0; });
  EXPECT_EQ(zone->zone()->name(), "Asia/Tokyo");
  // And as people do it: first without, then again with a link.
  fs::remove(places.link);
  link("/usr/share/zoneinfo/America/New_York");
  runMainContextUntil([&] { return changes > 1; });
  EXPECT_EQ(zone->zone()->name(), "America/New_York");
  // The same zone again, then another: one change.
  fs::remove(places.link);
  link("../usr/share/zoneinfo/America/New_York");
  fs::remove(places.link);
  link("/usr/share/zoneinfo/Europe/Berlin");
  runMainContextUntil([&] { return zone->zone()->name() == "Europe/Berlin"; });
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(told, Texts());
}

TEST_F(LocalZoneTest, TellsNothingOnceItHasEnded) {
  link("/usr/share/zoneinfo/Europe/Berlin");
  const auto witness = make();
  int before = 0;
  {
    LocalZone ended(
        nullptr, [&] { ++before; }, places);
    fs::remove(places.link);
    link("/usr/share/zoneinfo/Asia/Tokyo");
  }
  runMainContextUntil([&] { return changes > 0; });
  EXPECT_EQ(before, 0);
}

}  // namespace
}  // namespace hushmode::devices
