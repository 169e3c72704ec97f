// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/LinuxFoundation.h"

#include "tests/contracts/FoundationContract.h"
#include "tests/devices/linux/core/TemporaryFolder.h"

#include <csignal>
#include <optional>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hushmode {

namespace contracts {
namespace {

class LinuxFoundationWorld final : public FoundationWorld {
 public:
  LinuxFoundationWorld() { start(); }
  ~LinuxFoundationWorld() override {
    if (limited_) ::setrlimit(RLIMIT_FSIZE, &before_);
  }

  platform::Foundation& foundation() override { return *foundation_; }
  void restartProcess() override {
    foundation_->processEnded();
    foundation_.reset();
    start();
  }
  void makeWritesFail(std::string_view) override {
    // Not by permissions: root may write anywhere.
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit none{0, before_.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &none);
    limited_ = true;
  }
  void putGarbage(std::string_view path) override {
    const auto file = *foundation_->files().diskPath(path);
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << "no property list";
  }

 private:
  void start() {
    const auto& root = folder_.path();
    foundation_.emplace(devices::LinuxFoundation::Options{{root / "config", root / "state", root / "data"}}, loop_,
                        devices::TimeZone::named("Pacific/Auckland"), nullptr);
  }

  devices::TemporaryFolder folder_;
  devices::MainLoop loop_{nullptr};
  std::optional<devices::LinuxFoundation> foundation_;
  rlimit before_{};
  bool limited_ = false;
};

INSTANTIATE_TEST_SUITE_P(Linux, FoundationContract, ::testing::Values([]() -> std::unique_ptr<FoundationWorld> {
                           return std::make_unique<LinuxFoundationWorld>();
                         }));

}  // namespace
}  // namespace contracts

namespace devices {
namespace {

using Texts = std::vector<std::string>;

class LinuxFoundationTest : public ::testing::Test {
 protected:
  std::unique_ptr<LinuxFoundation> make(bool logsLibrary = false) {
    const auto& root = folder.path();
    return std::make_unique<LinuxFoundation>(
        LinuxFoundation::Options{{root / "config", root / "state", root / "data"}, "com.quorvel.Hushmode", logsLibrary},
        loop, TimeZone::named("Europe/Berlin"), [this](Priority priority, const std::string& line) {
          told.push_back(std::to_string(static_cast<int>(priority)) + " " + line);
        });
  }
  static mode_t modeOf(const std::filesystem::path& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777;
  }

  TemporaryFolder folder;
  MainLoop loop{nullptr};
  Texts told;
};

TEST_F(LinuxFoundationTest, KeepsFilesWhereTheUserExpectsThemAndForTheUserAlone) {
  const mode_t mask = ::umask(0);
  const auto foundation = make();
  EXPECT_TRUE(foundation->files().writeArrayToFileAtomically({1}, "/var/mobile/Library/Preferences/a.plist"));
  EXPECT_TRUE(foundation->files().writeArrayToFileAtomically({1}, "/var/mobile/Library/Hushmode/b.plist"));
  foundation->standardUserDefaults().setBool(true, "key");
  foundation->standardUserDefaults().synchronize();
  foundation->standardUserDefaults().setPersistentDomain({}, "com.example");
  ::umask(mask);
  for (const char* name : {"config", "state"}) EXPECT_EQ(modeOf(folder.path() / name), 0700U) << name;
  for (const char* name :
       {"config/a.plist", "state/b.plist", "state/com.quorvel.Hushmode.plist", "state/com.example.plist"}) {
    EXPECT_EQ(modeOf(folder.path() / name), 0600U) << name;
  }
  EXPECT_FALSE(foundation->files().writeArrayToFileAtomically({1}, "/etc/passwd"));
  EXPECT_EQ(told.size(), 1U);
}

TEST_F(LinuxFoundationTest, SaysWhatIsWrongWithAFile) {
  folder.put("config/a.plist", "no property list");
  EXPECT_FALSE(make()->files().arrayWithContentsOfFile("/var/mobile/Library/Preferences/a.plist"));
  ASSERT_EQ(told.size(), 1U);
  EXPECT_TRUE(told[0].starts_with("4 " + (folder.path() / "config/a.plist").string() + ": ")) << told[0];
}

TEST_F(LinuxFoundationTest, ThePreferenceBundleIsTheOneOfTheDataFolder) {
  const std::string path = "/Library/PreferenceBundles/HushmodePreferences.bundle";
  EXPECT_EQ(make()->bundleWithPath(path), nullptr);
  folder.put("data/HushmodePreferences.bundle/en.lproj/Localizable.strings",
             "<plist version=\"1.0\"><dict><key>Yes, please</key><string>Yes!</string></dict></plist>");
  const auto foundation = make();
  ASSERT_NE(foundation->bundleWithPath(path), nullptr);
  EXPECT_EQ(foundation->bundleWithPath(path)->localizedStringForKey("Yes, please", std::nullopt), "Yes!");
  EXPECT_EQ(foundation->bundleWithPath("/Library/Other.bundle"), nullptr);
  EXPECT_EQ(foundation->mainBundle()->bundleIdentifier(), "com.quorvel.Hushmode");
  EXPECT_EQ(foundation->mainBundle()->localizedStringForKey("Yes, please", ""), "Yes!");
  EXPECT_EQ(foundation->mainBundle()->localizedStringForKey("No, thanks", ""), "No, thanks");
}

TEST_F(LinuxFoundationTest, FollowsTheZone) {
  const auto foundation = make();
  const auto formatter = foundation->makeDateFormatter();
  formatter->setDateFormat("HH:mm");
  EXPECT_EQ(formatter->stringFromDate(platform::Date(1'715'673'600)), "10:00");
  foundation->setTimeZone(TimeZone::named("Asia/Tokyo"));
  EXPECT_EQ(formatter->stringFromDate(platform::Date(1'715'673'600)), "17:00");
  EXPECT_EQ(foundation->currentCalendar().componentsOfDate(platform::Date(1'715'673'600)).hour, 17);
}

TEST_F(LinuxFoundationTest, ObserversEndWithTheirProcess) {
  const auto foundation = make();
  foundation->defaultNotificationCenter().addObserver(this, "name", nullptr, [](const auto&) { FAIL(); });
  foundation->processEnded();
  foundation->defaultNotificationCenter().post({"name", nullptr, {}});
  EXPECT_EQ(foundation->defaultNotificationCenter().observerCount(), 0U);
}

TEST_F(LinuxFoundationTest, TheLibrarysLinesAreForThoseWhoLookForFaults) {
  using Level = platform::LogLine::Level;
  EXPECT_FALSE(make()->systemLog().isListening(Level::Error));
  const auto foundation = make(true);
  EXPECT_TRUE(foundation->systemLog().isListening(Level::Information));
  foundation->systemLog().write({Level::Error, "apply", 7, "Interview"});
  EXPECT_EQ(told, Texts{"7 com.quorvel.Hushmode: Error => apply, [Line 7], Interview"});
}

TEST(JournalSinkTest, WritesOneLineWithItsPriorityInFront) {
  int ends[2];
  ASSERT_EQ(::pipe(ends), 0);
  const LogSink sink = journalSink(ends[1], Priority::Information);
  sink(Priority::Information, "first\n<0>forged\x1b[2J");
  sink(Priority::Debug, "Interview");
  sink(Priority::Error, "second");
  ::close(ends[1]);
  char text[200] = {};
  ASSERT_GT(::read(ends[0], text, sizeof text - 1), 0);
  ::close(ends[0]);
  EXPECT_EQ(std::string(text), "<6>first <0>forged [2J\n<3>second\n");
}

}  // namespace
}  // namespace devices
}  // namespace hushmode
