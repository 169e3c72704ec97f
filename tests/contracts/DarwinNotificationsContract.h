// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <vector>

/// What holds for the system-wide notifications of every phone, as one of its processes sees them.
///
/// A `World` is a phone with such a process:
///   void observe(std::function<void(std::string_view)>) - observes all names, as long as the world lives;
///   void post(std::string_view)                         - the process posts;
///   void postFromAnotherProcess(std::string_view)       - another one does;
///   void settle()                                       - until all that was posted has arrived.
namespace hushmode::contracts {

template <class World>
class DarwinNotificationsContract : public ::testing::Test {
 protected:
  using Texts = std::vector<std::string>;

  void observe(Texts& heard) {
    world.observe([&heard](std::string_view name) { heard.emplace_back(name); });
  }

  Texts heard;
  World world;
};

TYPED_TEST_SUITE_P(DarwinNotificationsContract);

TYPED_TEST_P(DarwinNotificationsContract, AProcessHearsItsOwnOnce) {
  this->observe(this->heard);
  this->world.post("com.quorvel.one");
  this->world.settle();
  EXPECT_EQ(this->heard, std::vector<std::string>{"com.quorvel.one"});
}

TYPED_TEST_P(DarwinNotificationsContract, ObserversAreNotToldInsideThePost) {
  this->observe(this->heard);
  this->world.post("com.quorvel.one");
  EXPECT_TRUE(this->heard.empty());
  this->world.settle();
  EXPECT_EQ(this->heard.size(), 1u);
}

TYPED_TEST_P(DarwinNotificationsContract, NamesArriveInTheOrderOfTheirPosts) {
  this->observe(this->heard);
  for (const char* name : {"b", "a", "b", "c"}) this->world.post(name);
  this->world.settle();
  EXPECT_EQ(this->heard, (std::vector<std::string>{"b", "a", "b", "c"}));
}

TYPED_TEST_P(DarwinNotificationsContract, EachObserverIsTold) {
  std::vector<std::string> also;
  this->observe(this->heard);
  this->observe(also);
  this->world.post("com.quorvel.one");
  this->world.settle();
  EXPECT_EQ(this->heard, std::vector<std::string>{"com.quorvel.one"});
  EXPECT_EQ(also, this->heard);
}

TYPED_TEST_P(DarwinNotificationsContract, WhoObservesAfterAPostIsNotToldOfIt) {
  this->world.post("com.quorvel.one");
  this->observe(this->heard);
  this->world.post("com.quorvel.two");
  this->world.settle();
  EXPECT_EQ(this->heard, std::vector<std::string>{"com.quorvel.two"});
}

TYPED_TEST_P(DarwinNotificationsContract, WhatAnotherProcessPostsIsHeardOnce) {
  this->observe(this->heard);
  this->world.postFromAnotherProcess("com.quorvel.theirs");
  this->world.settle();
  EXPECT_EQ(this->heard, std::vector<std::string>{"com.quorvel.theirs"});
}

TYPED_TEST_P(DarwinNotificationsContract, AnObserverMayPost) {
  this->world.observe([this](std::string_view name) {
    this->heard.emplace_back(name);
    if (name == "first") this->world.post("second");
  });
  this->world.post("first");
  this->world.settle();
  EXPECT_EQ(this->heard, (std::vector<std::string>{"first", "second"}));
}

REGISTER_TYPED_TEST_SUITE_P(DarwinNotificationsContract, AProcessHearsItsOwnOnce, ObserversAreNotToldInsideThePost,
                            NamesArriveInTheOrderOfTheirPosts, EachObserverIsTold, WhoObservesAfterAPostIsNotToldOfIt,
                            WhatAnotherProcessPostsIsHeardOnce, AnObserverMayPost);

}  // namespace hushmode::contracts
