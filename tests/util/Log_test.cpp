// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The one function that every log line goes through.

#include "util/Log.h"

#include "tests/support/CoreTest.h"

namespace hushmode {
namespace {

using platform::LogLine;
using Level = platform::LogLine::Level;

TEST(WholeLogLine, HasPrefixLevelMethodLineAndMessage) {
  EXPECT_EQ(wholeLogLine({Level::Information, "setPropertiesFromDicitonary:", 88, "hello"}),
            "com.quorvel.Hushmode: Information => setPropertiesFromDicitonary:, [Line 88], hello");
  EXPECT_EQ(wholeLogLine({Level::Warning, "a:b:", 1, "x"}), "com.quorvel.Hushmode: Warning => a:b:, [Line 1], x");
  EXPECT_EQ(wholeLogLine({Level::Error, "m", 0, ""}), "com.quorvel.Hushmode: Error => m, [Line 0], ");
}

TEST(WholeLogLine, OfABareLineIsTheMessageAlone) {
  EXPECT_EQ(wholeLogLine({Level::Bare, "m", 7, "just this"}), "just this");
}

TEST(LogLevelName, IsTheWordInTheLine) {
  EXPECT_EQ(logLevelName(Level::Information), "Information");
  EXPECT_EQ(logLevelName(Level::Warning), "Warning");
  EXPECT_EQ(logLevelName(Level::Error), "Error");
  EXPECT_EQ(logLevelName(Level::Bare), "");
}

class Log : public CoreTest {};

TEST_F(Log, WritesItsFixedLineOrTheLineOfTheCall) {
  logInformation({"method:", 286}, "fixed");
  logWarning("method:", "here");
  const int here = __LINE__ - 1;
  logError({"method:"}, "there");
  EXPECT_EQ(logged(), (Texts{"information 286 method: fixed", "warning " + std::to_string(here) + " method: here",
                             "error " + std::to_string(here + 2) + " method: there"}));
}

TEST_F(Log, FillsThePlaceholders) {
  logInformation({"m", 1}, "%@ & %d of %s", std::optional<std::string>(), 3, "x");
  EXPECT_EQ(logged(), Texts{"information 1 m (null) & 3 of x"});
}

TEST_F(Log, MarksABareLine) {
  logBare("m", "plain %@", "text");
  EXPECT_EQ(texts(), Texts{"log bare plain text"});
}

/// An object that counts how often it is described.
class Counting : public platform::Object {
 public:
  std::string description() const override {
    ++described;
    return "counted";
  }
  mutable int described = 0;
};

TEST_F(Log, FormatsNothingWhenNobodyListensAtThatLevel) {
  const auto object = std::make_shared<Counting>();
  phone.record().setListening(Level::Information, false);
  logInformation("m", "%@", object);
  EXPECT_EQ(object->described, 0);
  EXPECT_EQ(texts(), Texts());
  logError("m", "%@", object);
  EXPECT_EQ(object->described, 1);
  EXPECT_EQ(texts(), Texts{"log E counted"});
}

}  // namespace
}  // namespace hushmode
