#pragma once

#include "devices/simulated/SimulatedPhone.h"
#include "store/HMProfilesManager.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::simulation {

/// What profiles change on a phone.
struct PhoneState {
  float ringtone = 0, media = 0;
  bool ringVibrate = false, silentVibrate = false, doNotDisturb = false, icon = false;
  bool operator==(const PhoneState&) const = default;
};

PhoneState stateOf(devices::SimulatedPhone& phone);

/// What differs, in words: "ringtone 80% to 6%, media 50% to 0%"; "nothing changed" when nothing does.
std::string differenceText(const PhoneState& before, const PhoneState& after);

/// A profile that went on or off.
struct Switch {
  platform::Date at{0};
  std::string profile;
  std::int64_t identifier = 0;
  bool on = false;
  std::string reason;  ///< "Standup"; "Standup" ended; network Office; ...
  PhoneState before, after;
  bool withNext = false;  ///< Another profile switched at the same instant; the change is told with that one.
};

/// Watches the applied profiles of a simulated phone, and tells of each switch once its delayed effects have come to
/// rest.
class SwitchWatch {
 public:
  SwitchWatch(devices::SimulatedPhone& phone, std::function<void(const Switch&)> tell);

  /// A process started: what it applies is watched from now on.
  void watch(HMProfilesManager& manager);
  /// The process died; what was applied stays known.
  void unwatch() { manager_ = nullptr; }

  /// To be called after every piece of work and every step.
  void look();
  /// Tells of the switches that have not come to rest yet.
  void finish();

  /// Why the next switches happen, where only whoever drives the phone can know: "Hush Mode switched off". Empty: as it
  /// looks from the phone.
  void setCause(std::string cause) { cause_ = std::move(cause); }

 private:
  struct Applied {
    std::string reason;                      ///< What it was applied for.
    std::optional<platform::Date> eventEnd;  ///< Of the event that it was applied for.
    bool byNetwork = false;
  };
  Applied reasonToApply(HMProfile& profile);
  std::string reasonToRevert(HMProfile& profile, const Applied& applied);
  void rest();

  devices::SimulatedPhone& phone_;
  std::function<void(const Switch&)> tell_;
  HMProfilesManager* manager_ = nullptr;
  std::map<std::int64_t, Applied> applied_;
  std::vector<Switch> moving_;  ///< Told when the delayed effects are over.
  PhoneState last_;
  std::string cause_;
};

}  // namespace hushmode::simulation
