// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/core/StringTables.h"

#include "tests/devices/linux/core/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;

/// Sets a variable of the environment until the end of the test.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* held = ::getenv(name)) before_ = held;
    value ? ::setenv(name, value, 1) : ::unsetenv(name);
  }
  ~Variable() { before_ ? ::setenv(name_, before_->c_str(), 1) : ::unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

class StringTablesTest : public ::testing::Test {
 protected:
  void table(const std::string& language, const std::string& entries) {
    folder.put(language + ".lproj/Localizable.strings", "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>");
  }
  std::string text(std::vector<std::string> languages, std::string_view key = "Yes") {
    return StringTables("id", folder.path(), std::move(languages),
                        [this](const std::string& line) { told.push_back(line); })
        .localizedStringForKey(key, std::nullopt);
  }

  TemporaryFolder folder;
  Texts told;
};

TEST_F(StringTablesTest, AnswerInTheFirstLanguageThatHasTheText) {
  table("en", "<key>Yes</key><string>Yes!</string><key>Only English</key><string>English!</string>");
  table("de", "<key>Yes</key><string>Ja</string><key>No</key><integer>5</integer>");
  table("pt_BR", "<key>Yes</key><string>Sim</string>");
  EXPECT_EQ(text({"de_AT.UTF-8", "de_AT", "de"}), "Ja");
  EXPECT_EQ(text({"pt_BR", "pt", "de"}), "Sim");
  EXPECT_EQ(text({"pt", "de"}), "Ja");
  EXPECT_EQ(text({"fr"}), "Yes!");
  EXPECT_EQ(text({}), "Yes!");
  EXPECT_EQ(text({"de"}, "Only English"), "English!");
  EXPECT_EQ(text({"de"}, "No"), "No") << "what is no text";
  EXPECT_EQ(text({"../de"}), "Yes!");
  EXPECT_EQ(told, Texts());
}

TEST_F(StringTablesTest, AnswerTheValueThenTheKey) {
  const StringTables tables("id", folder.path(), {"de"}, nullptr);
  EXPECT_EQ(tables.localizedStringForKey("Yes", "Value"), "Value");
  EXPECT_EQ(tables.localizedStringForKey("Yes", ""), "Yes");
  EXPECT_EQ(tables.localizedStringForKey("Yes", std::nullopt), "Yes");
  EXPECT_EQ(tables.bundleIdentifier(), "id");
}

TEST_F(StringTablesTest, SayOnceWhichTableCannotBeRead) {
  folder.put("de.lproj/Localizable.strings", "\"Yes\" = \"Ja\";");
  folder.put("en.lproj/Localizable.strings", "<plist version=\"1.0\"><array/></plist>");
  const StringTables tables("id", folder.path(), {"de"}, [this](const std::string& line) { told.push_back(line); });
  EXPECT_EQ(tables.localizedStringForKey("Yes", std::nullopt), "Yes");
  EXPECT_EQ(tables.localizedStringForKey("No", std::nullopt), "No");
  ASSERT_EQ(told.size(), 2U);
  EXPECT_NE(told[0].find("de.lproj/Localizable.strings"), std::string::npos);
  EXPECT_NE(told[1].find("en.lproj/Localizable.strings: top level: expected a dictionary"), std::string::npos);
}

TEST_F(StringTablesTest, LanguagesComeInTheOrderOfTheLocaleVariables) {
  const auto first = [] {
    const Texts languages = StringTables::preferredLanguages();
    return languages.empty() ? "" : languages[0];
  };
  {
    const Variable language("LANGUAGE", nullptr), all("LC_ALL", nullptr), messages("LC_MESSAGES", nullptr),
        lang("LANG", "pt_BR.UTF-8");
    const Texts languages = StringTables::preferredLanguages();
    EXPECT_NE(std::find(languages.begin(), languages.end(), "pt_BR"), languages.end());
    EXPECT_EQ(languages.back(), "pt");
    {
      const Variable override("LC_MESSAGES", "de");
      EXPECT_EQ(first(), "de");
      const Variable list("LANGUAGE", "fr:sv");
      EXPECT_EQ(StringTables::preferredLanguages(), (Texts{"fr", "sv"}));
    }
    const Variable none("LANG", "C");
    EXPECT_EQ(StringTables::preferredLanguages(), Texts());
  }
}

}  // namespace
}  // namespace hushmode::devices
