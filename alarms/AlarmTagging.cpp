// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "alarms/AlarmTagging.h"

#include "platform/Process.h"
#include "store/HMProfilesManager.h"
#include "util/Log.h"
#include "util/Numbers.h"

namespace hushmode {

using platform::Alarm;
using AlarmPointer = std::shared_ptr<Alarm>;

namespace {

constexpr char profileKey = 0, hiddenToo = 0, hiddenTooOfClass = 0;

std::string titleOf(const AlarmPointer& alarm) {
  if (alarm->respondsTo("title")) return alarm->title();
  if (alarm->respondsTo("rawTitle")) return alarm->rawTitle();
  return alarm->uiTitle();
}

void keepFlag(platform::Object* object, const void* key, bool flag) {
  if (object) object->setAssociation(key, std::make_shared<bool>(flag));
}

bool flagOf(const platform::Object* object, const void* key) {
  const auto flag = object ? std::static_pointer_cast<bool>(object->association(key)) : nullptr;
  return flag && *flag;
}

}  // namespace

bool hm_isHidden(const AlarmPointer& alarm) {
  const std::string title = titleOf(alarm);
  logInformation(
      {"hm_isHidden", 47},
      "Checking title: '%@' is Hush Mode owned or not, title.length > 0: %d && [title hasPrefix:Hush Mode+]: %d", title,
      !title.empty(), title.starts_with("Hush Mode+"));
  return !title.empty() && title.starts_with("Hush ModeMe");
}

bool hm_createdByHM(const AlarmPointer& alarm) { return hm_isHidden(alarm); }

std::int64_t hm_identifier(const AlarmPointer& alarm) {
  const std::string title = titleOf(alarm);
  const std::size_t plus = title.rfind("+");
  return plus == std::string::npos ? 0 : leadingInteger(std::string_view(title).substr(plus + 1));
}

std::shared_ptr<HMProfile> hm_profile(const AlarmPointer& alarm) {
  if (auto kept = std::static_pointer_cast<HMProfile>(alarm->association(&profileKey))) return kept;
  return HMProfilesManager::sharedManager()->profileByIdentifier(hm_identifier(alarm));
}

void setHm_profile(const AlarmPointer& alarm, std::shared_ptr<HMProfile> profile) {
  alarm->setAssociation(&profileKey, std::move(profile));
}

bool hm_shouldGetHiddenAlarmsToo(const std::shared_ptr<platform::Object>& manager) {
  return flagOf(manager.get(), &hiddenToo);
}
void setHm_shouldGetHiddenAlarmsToo(const std::shared_ptr<platform::Object>& manager, bool wanted) {
  keepFlag(manager.get(), &hiddenToo, wanted);
}
bool hm_shouldGetHiddenAlarmsTooClassLevel(platform::Class* managerClass) {
  return flagOf(managerClass, &hiddenTooOfClass);
}
void setHm_shouldGetHiddenAlarmsTooClassLevel(platform::Class* managerClass, bool wanted) {
  keepFlag(managerClass, &hiddenTooOfClass, wanted);
}

std::vector<AlarmPointer> HMProfilesManager::unloadAllHushmodeAlarms() {
  auto* managerClass = platform::find<platform::AlarmManager>();
  const auto manager = managerClass ? managerClass->sharedManager() : nullptr;
  if (!manager) return {};
  manager->loadAlarms();
  const std::vector<AlarmPointer> before = manager->alarms();  // A copy: removals must not disturb the walk.
  for (const AlarmPointer& alarm : before) {
    if (!hm_createdByHM(alarm)) continue;
    logInformation({"unloadAllHushmodeAlarms", 144}, "Removing alarm: %@ from alarms", alarm);
    manager->removeAlarm(alarm);
  }
  return before;
}

}  // namespace hushmode
