// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/support/PhoneFixture.h"

namespace hushmode {
namespace {

using platform::Dictionary;
using Level = platform::LogLine::Level;
using Texts = std::vector<std::string>;

TEST(RecordEntry, IsSpelledForPeople) {
  const struct {
    const char* kind;
    Dictionary fields;
    const char* text;
  } cases[] = {
      {"log", {{"level", "information"}, {"method", "m"}, {"line", 286}, {"message", "Saved."}}, "log I Saved."},
      {"log", {{"level", "warning"}, {"message", "w"}}, "log W w"},
      {"log", {{"level", "error"}, {"message", "e"}}, "log E e"},
      {"log", {{"level", "bare"}, {"message", "***"}}, "log bare ***"},
      {"effect",
       {{"name", "setVolumeTo"}, {"volume", 0.0625}, {"category", "Ringtone"}, {"ok", true}},
       "fx setVolumeTo:0.062500 forCategory:Ringtone"},
      {"effect",
       {{"name", "setVolumeTo"}, {"volume", 1}, {"category", "Volume"}, {"ok", false}},
       "fx setVolumeTo:1 forCategory:Volume (failed)"},
      {"effect",
       {{"name", "tone start"}, {"type", 1}, {"tone", "texttone:Chime"}, {"way", "startPlayingRepeatedly"}},
       "fx tone start type 1 \"texttone:Chime\""},
      {"effect",
       {{"name", "tone start"}, {"type", 0}, {"way", "playToneAndVibrationForType"}},
       "fx tone start type 0 none by playToneAndVibrationForType"},
      {"effect", {{"name", "unheard of"}, {"a", true}, {"b", "text"}}, "fx unheard of a=true b=\"text\""},
      {"defaults", {{"operation", "set"}, {"key", "k"}, {"value", 0.8F}}, "def set \"k\" = 0.800000012"},
      {"defaults", {{"operation", "set"}, {"key", "k"}, {"value", 0.5F}}, "def set \"k\" = 0.5"},
      {"defaults", {{"operation", "set"}, {"key", "k"}, {"value", 0.0F}}, "def set \"k\" = 0"},
      {"defaults", {{"operation", "set"}, {"key", "k"}, {"value", false}}, "def set \"k\" = false"},
      {"defaults", {{"operation", "remove"}, {"key", "k"}}, "def remove \"k\""},
      {"defaults", {{"operation", "synchronize"}}, "def synchronize"},
      {"defaults",
       {{"operation", "domain"}, {"key", "other.app"}, {"value", Dictionary{{"a", 1}, {"b", platform::Array{"x", 2}}}}},
       "def domain \"other.app\" = {\"a\": 1, \"b\": [\"x\", 2]}"},
      {"defaults",
       {{"operation", "domain"},
        {"key", "com.apple.springboard"},
        {"value", Dictionary{{"ring-vibrate", false}, {"other", 1}}}},
       "fx springboard domain ring-vibrate=false silent-vibrate=none"},
      {"file", {{"operation", "write"}, {"path", "/a/b.plist"}, {"ok", false}}, "file write /a/b.plist failed"},
      {"notification", {{"name", "n"}}, "notification n"},
      {"darwin", {{"name", "n"}}, "darwin n"},
      {"perform",
       {{"operation", "schedule"}, {"selector", "s"}, {"target", "<t>"}, {"delay", 2.0}},
       "fx schedule s on <t> at +2.0 s"},
      {"alert",
       {{"operation", "show"}, {"title", "T"}, {"message", "M"}, {"buttons", platform::Array{"A", "B"}}},
       "alert show \"T\" \"M\" [\"A\", \"B\"]"},
      {"alert", {{"operation", "answer"}, {"index", 1}, {"button", "B"}}, "alert answer 1 \"B\""},
      {"table", {{"identifier", 17}, {"event", "<EKEvent E>"}}, "table 17[0] := <EKEvent E>"},
      {"phone", {{"step", "lock"}}, "phone lock"},
      {"phone",
       {{"step", "volume button"}, {"category", "Ringtone"}, {"volume", 0.5}},
       "phone volume button Ringtone 0.500000"},
      {"note", {{"a", platform::Data(3)}, {"b", platform::Date(0)}}, "note a=<3 bytes> b=1970-01-01 00:00:00 UTC"},
  };
  for (const auto& each : cases) {
    EXPECT_EQ((devices::RecordEntry{platform::Date(0), 0, each.kind, each.fields}.text()), each.text);
  }
}

TEST(LocalTimeText, ShowsMillisecondsOnlyWhereThereAreAny) {
  const struct {
    double seconds;
    const char* text;
  } cases[] = {
      {0, "1970-01-01 00:00:00"},
      {1715677200.5, "2024-05-14 09:00:00.500"},
      {1715677200.0004, "2024-05-14 09:00:00"},
      {1715677199.9999, "2024-05-14 09:00:00"},
      {-0.25, "1969-12-31 23:59:59.750"},
  };
  for (const auto& each : cases) EXPECT_EQ(devices::localTimeText(each.seconds), each.text);
}

TEST_F(PhoneFixture, EntriesCarryTheVirtualTimeAndTheZone) {
  phone.moveToTimeZone("Asia/Kolkata");
  runFor(0.25);
  phone.screen().lock();
  const devices::RecordEntry& entry = phone.record().entries().back();
  EXPECT_EQ(entry.time, platform::Date(1715673600.25));
  EXPECT_EQ(entry.utcOffset, 19800);
  EXPECT_EQ(entry.localTime(), "2024-05-14 13:30:00.250");
}

TEST_F(PhoneFixture, LogLinesKeepTheirPieces) {
  phone.foundation().systemLog().write({Level::Information, "saveAll:", 286, "Saved."});
  EXPECT_EQ(phone.record().entries().back().fields,
            (Dictionary{{"level", "information"}, {"method", "saveAll:"}, {"line", 286}, {"message", "Saved."}}));
}

TEST_F(PhoneFixture, LogLevelsCanBeLeftUnheard) {
  platform::SystemLog& log = phone.foundation().systemLog();
  EXPECT_TRUE(log.isListening(Level::Bare));
  phone.record().setListening(Level::Information, false);
  EXPECT_FALSE(log.isListening(Level::Information));
  EXPECT_TRUE(log.isListening(Level::Error));
  phone.record().setListening(false);
  for (const Level level : {Level::Information, Level::Warning, Level::Error, Level::Bare}) {
    EXPECT_FALSE(log.isListening(level));
  }
}

TEST_F(PhoneFixture, EntriesCanBeHandedOnInsteadOfKept) {
  Texts heard;
  phone.record().setListener([&](const devices::RecordEntry& entry) { heard.push_back(entry.text()); });
  phone.screen().lock();
  phone.record().setKeepsEntries(false);
  phone.screen().unlock();
  EXPECT_EQ(heard, (Texts{"phone lock", "phone unlock"}));
  EXPECT_EQ(texts(), Texts{"phone lock"});
}

TEST(Record, IsTheSameForTheSameSteps) {
  const auto run = [] {
    devices::SimulatedPhone phone(platform::Date(1715673600), devices::TimeZone::named("Europe/Berlin"));
    std::string lines;
    phone.record().setListener(
        [&](const devices::RecordEntry& entry) { lines += entry.localTime() + ' ' + entry.text() + '\n'; });
    phone.wifi().join("Home");
    phone.runLoop().dispatchAfter(0.7, [&] { phone.sound().pressVolumeButton("Ringtone", 0.3F); });
    phone.runLoop().dispatchAfter(0.7, [&] { phone.defaults().setFloat(0.1F, "key"); });
    phone.time().runFor(1.1);
    phone.jumpClockTo(platform::Date(1800000000.125));
    phone.suspend();
    return lines;
  };
  const std::string first = run();
  EXPECT_EQ(first, run());
  EXPECT_EQ(std::count(first.begin(), first.end(), '\n'), 5);
}

}  // namespace
}  // namespace hushmode
