// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/desktop/NotificationInhibition.h"

#include "tests/devices/linux/desktop/DesktopTest.h"
#include "tests/devices/linux/desktop/NotificationsStandIn.h"

#include <optional>

namespace hushmode::devices {
namespace {

using Texts = std::vector<std::string>;

/// Where what may be asked of the class beside what DoNotDisturb asks shows.
class NotificationInhibitionTest : public DesktopTest {
 protected:
  NotificationInhibition inhibition{bus, std::chrono::milliseconds(300), [] {}};
};

TEST_F(NotificationInhibitionTest, IsNotHeldInReserveForAServiceToCome) {
  ASSERT_TRUE(waitUntil([&] { return inhibition.isKnown(); }));
  inhibition.setInhibited(true);
  EXPECT_FALSE(inhibition.isInhibited());
  NotificationsStandIn service;
  ASSERT_TRUE(waitUntil([&] { return inhibition.isPresent(); }));
  exchangeWith(bus);
  service.receiveAll();
  EXPECT_EQ(service.calls(), Texts());
}

TEST_F(NotificationInhibitionTest, IsForgottenWithAServiceThatHasNone) {
  auto service = std::make_optional<NotificationsStandIn>();
  ASSERT_TRUE(waitUntil([&] { return inhibition.isPresent(); }));
  inhibition.setInhibited(true);
  service.emplace(false);
  ASSERT_TRUE(waitUntil([&] { return inhibition.isPresent() && !inhibition.isOffered(); }));
  EXPECT_FALSE(inhibition.isInhibited());
  service.emplace();
  ASSERT_TRUE(waitUntil([&] { return inhibition.isPresent() && inhibition.isOffered(); }));
  exchangeWith(bus);
  service->receiveAll();
  EXPECT_EQ(service->calls(), Texts());
}

}  // namespace
}  // namespace hushmode::devices
