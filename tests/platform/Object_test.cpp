// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// What a category can do with any object: keep state beside it, ask it, look inside it.

#include "platform/Object.h"

#include <gtest/gtest.h>

namespace hushmode::platform {
namespace {

class Holder : public Object {
 public:
  explicit Holder(std::shared_ptr<Object> held) : held_(std::move(held)) {}
  std::shared_ptr<Object> instanceVariable(std::string_view name) const override {
    return name == "_held" ? held_ : nullptr;
  }

 private:
  std::shared_ptr<Object> held_;
};

constexpr char one = 0, other = 0;

TEST(Association, IsKeptUnderItsKeyAlone) {
  const auto object = std::make_shared<Object>();
  const auto value = std::make_shared<int>(5);
  object->setAssociation(&one, value);
  EXPECT_EQ(object->association(&one), value);
  EXPECT_EQ(object->association(&other), nullptr);
  EXPECT_EQ(std::make_shared<Object>()->association(&one), nullptr);
}

TEST(Association, IsReplacedAndRemoved) {
  const auto object = std::make_shared<Object>();
  const auto first = std::make_shared<int>(1), second = std::make_shared<int>(2);
  object->setAssociation(&one, first);
  object->setAssociation(&other, first);
  object->setAssociation(&one, second);
  EXPECT_EQ(object->association(&one), second);
  EXPECT_EQ(object->association(&other), first);
  object->setAssociation(&one, nullptr);
  EXPECT_EQ(object->association(&one), nullptr);
  EXPECT_EQ(object->association(&other), first);
  EXPECT_EQ(first.use_count(), 2) << "the replaced association must have let go of its value";
  EXPECT_EQ(second.use_count(), 1);
}

TEST(Association, IsStrongAndEndsWithItsObject) {
  auto object = std::make_shared<Object>();
  std::weak_ptr<int> value;
  {
    const auto made = std::make_shared<int>(7);
    value = made;
    object->setAssociation(&one, made);
  }
  EXPECT_FALSE(value.expired());
  object.reset();
  EXPECT_TRUE(value.expired());
}

TEST(InstanceVariable, IsNoneOfANullObjectAndForAnUnknownName) {
  const auto held = std::make_shared<Object>();
  const std::shared_ptr<Object> holder = std::make_shared<Holder>(held);
  EXPECT_EQ(instanceVariable(holder, "_held"), held);
  EXPECT_EQ(instanceVariable(holder, "_other"), nullptr);
  EXPECT_EQ(instanceVariable(nullptr, "_held"), nullptr);
  EXPECT_EQ(instanceVariable(held, "_held"), nullptr);
}

}  // namespace
}  // namespace hushmode::platform
