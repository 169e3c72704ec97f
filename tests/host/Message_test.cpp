// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What the host says, as data: the English form with its values, and the same in another language.

#include "host/Message.h"

#include "host/PhoneState.h"
#include "host/Reason.h"

#include <gtest/gtest.h>
#include <map>
#include <set>

namespace hushmode::host {

namespace {

/// A language that says everything the other way round.
const char* backwards(const char* english) {
  static const std::map<std::string, const char*> forms = {
      {"\"{0}\" ended", "zu Ende: {0}"}, {"{0} of {1}", "{1} von {0}"}, {"(no title)", "(ohne Titel)"}};
  const auto place = forms.find(english);
  return place == forms.end() ? english : place->second;
}

}  // namespace

TEST(MessageTest, ValuesStandWhereTheFormWantsThem) {
  const Message message("{0} of {1}", std::string("Standup"), 3);
  EXPECT_EQ(message.english(), "Standup of 3");
  EXPECT_EQ(message.in(backwards), "3 von Standup");
}

TEST(MessageTest, BracesOfValuesAreLeftAlone) {
  EXPECT_EQ(Message("{0} of {1}", std::string("{1}"), std::string("{0} {9} {")).english(), "{1} of {0} {9} {");
  EXPECT_EQ(Message("{7} and {", std::string("x")).english(), "{7} and {");
  EXPECT_EQ(Message::verbatim("{0} of {1}").in(backwards), "{0} of {1}");
}

TEST(MessageTest, MessagesInMessagesAreTranslatedToo) {
  const Reason untitled{Reason::Kind::EventEnded, std::nullopt};
  EXPECT_EQ(messageOf(untitled).english(), "\"(no title)\" ended");
  EXPECT_EQ(messageOf(untitled).in(backwards), "zu Ende: (ohne Titel)");
}

TEST(ReasonTest, EachKindHasWordsAndACodeOfItsOwn) {
  std::set<std::string> words;
  std::set<std::string_view> codes;
  for (int number = 0; number <= static_cast<int>(Reason::Kind::SwitchedOff); ++number) {
    const auto kind = static_cast<Reason::Kind>(number);
    words.insert(messageOf({kind, "Office"}).english());
    codes.insert(codeOf(kind));
    EXPECT_EQ(reasonKindOf(codeOf(kind)), kind) << codeOf(kind);
  }
  EXPECT_EQ(words.size(), static_cast<std::size_t>(Reason::Kind::SwitchedOff) + 1);
  EXPECT_EQ(codes.size(), words.size());
  EXPECT_EQ(reasonKindOf("whim"), std::nullopt);
  EXPECT_EQ(messageOf({Reason::Kind::NetworkLeft, "Office"}).english(), "left network Office");
}

TEST(PhoneStateTest, ADifferenceIsAListOfWholeSentences) {
  PhoneState before, after;
  before.ringtone = 0.8f;
  after.ringtone = 0.06f;
  before.doNotDisturb = false;
  after.doNotDisturb = true;
  EXPECT_EQ(difference(before, after).english(), "ringtone 80% to 6%, do not disturb on");
  EXPECT_EQ(difference(before, after).in([](const char* english) {
    return std::string_view(english) == "{0}%" ? "{0} %" : english;
  }),
            "ringtone 80 % to 6 %, do not disturb on");
}

}  // namespace hushmode::host
