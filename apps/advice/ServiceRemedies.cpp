// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/advice/ServiceRemedies.h"

#include "apps/terminal/ShellWord.h"
#include "apps/words/Words.h"
#include "devices/words/Text.h"
#include "util/Numbers.h"

#include <algorithm>
#include <array>

namespace hushmode::cli {

using platform::Dictionary;
using enum Severity;

namespace {

using Needed = Severity (*)(const ServiceNeeds&);

constexpr Needed always = [](const ServiceNeeds&) { return Problem; };
constexpr Needed often = [](const ServiceNeeds&) { return Warning; };
constexpr Needed hardly = [](const ServiceNeeds&) { return Note; };
template <bool ServiceNeeds::*need>
constexpr Needed when = [](const ServiceNeeds& needs) { return needs.*need ? Warning : Note; };

struct Remedy {
  std::string_view service;
  Needed needed;
  const char* text;  ///< To be translated. {} is the daemon's program, {{ and }} are braces.
};

/// Of services that rest. Package names are Debian's.
constexpr std::array<Remedy, 15> remedies{{
    {"volumes", always,
     HUSHMODE_MARKED("Start the sound server: systemctl --user start pipewire-pulse (or pulseaudio)")},
    {"wake-ups", often,
     HUSHMODE_MARKED(
         "With systemd 254 or newer, start it in a graphical session; else: sudo setcap cap_wake_alarm=ep {0} "
         "&& systemctl --user edit hushmoded (with NoNewPrivileges=no), then: systemctl --user restart "
         "hushmoded")},
    {"calendar service", when<&ServiceNeeds::accounts>,
     HUSHMODE_MARKED("For calendars of accounts: sudo apt install evolution-data-server")},
    {"calendar folder", hardly, HUSHMODE_MARKED("For calendars without an account: mkdir -p {1}")},
    {"networks", when<&ServiceNeeds::networks>, HUSHMODE_MARKED("sudo systemctl start NetworkManager")},
    {"do not disturb", when<&ServiceNeeds::doNotDisturb>,
     HUSHMODE_MARKED("Start the desktop's notification service; its settings come with: sudo apt install "
                     "gsettings-desktop-schemas")},
    {"questions", hardly,
     HUSHMODE_MARKED("Start a notification service that shows buttons, such as the desktop's own")},
    {"sleep and lock", often, HUSHMODE_MARKED("sudo systemctl start systemd-logind")},
    {"tones", when<&ServiceNeeds::tones>, HUSHMODE_MARKED("sudo apt install feedbackd (or sound-theme-freedesktop)")},
    {"vibration", hardly, HUSHMODE_MARKED("On a phone that vibrates: sudo apt install feedbackd")},
    {"vibrate switches", hardly, HUSHMODE_MARKED("On a phone that vibrates: sudo apt install feedbackd")},
    {"screen", when<&ServiceNeeds::light>,
     HUSHMODE_MARKED("Use a desktop with a screen saver on the session bus, or without its light: hushmode profile "
                     "edit NAME --light off")},
    {"status icon", hardly, HUSHMODE_MARKED("Use a panel that shows status icons; without, see: hushmode status")},
    {"alarms", hardly, HUSHMODE_MARKED("For alarms of the clock: sudo apt install gnome-clocks")},
    {"appearance", hardly, HUSHMODE_MARKED("sudo apt install xdg-desktop-portal")},
}};

/// The daemon says it in its language, which need not be ours.
bool isLocked(const std::string& detail) {
  static constexpr std::array forms{
      HUSHMODE_MARKED("the setting org.gnome.desktop.notifications show-banners is locked"),
      HUSHMODE_MARKED("the alarms of GNOME Clocks are locked"), HUSHMODE_MARKED("the profile of feedbackd is locked")};
  return std::any_of(forms.begin(), forms.end(), [&](const char* form) { return isSaid(detail, form); });
}

bool names(const std::string& detail, std::string_view what) { return detail.find(what) != std::string::npos; }

}  // namespace

ServiceNeeds needsOf(const std::vector<Dictionary>& profiles) {
  ServiceNeeds needs;
  for (const Dictionary& each : profiles) {
    const auto asks = [&](const char* key) { return booleanMeaning(each.find(key)); };
    if (!asks("enabled")) continue;
    needs.tones |= asks("playAlert");
    needs.light |= asks("wakeUpScreen");
    needs.doNotDisturb |= asks("dnDEnabled");
    const ProfileRules rules = rulesOf(each, {});
    needs.networks |= !rules.networks.empty();
    needs.accounts |= std::any_of(rules.calendars.begin(), rules.calendars.end(),
                                  [](const std::string& name) { return !name.starts_with(folderPrefix); });
  }
  return needs;
}

Finding serviceFinding(const ServiceStatus& service, const ServiceNeeds& needs) {
  Finding finding{Note, "service-works", service.detail, {}};
  if (service.works) {
    if (service.name != "volumes") return finding;
    if (names(service.detail, "module-stream-restore")) {
      return {Warning, "service-in-part", service.detail, "pactl load-module module-stream-restore"};
    }
    if (isSaid(service.detail, HUSHMODE_MARKED("{}, no output"))) {
      return {Warning, "service-in-part", service.detail, tr("Connect a speaker; see: pactl list short sinks")};
    }
    return finding;
  }
  finding.name = "service-rests";
  const auto remedy =
      std::find_if(remedies.begin(), remedies.end(), [&](const Remedy& each) { return each.service == service.name; });
  if (remedy == remedies.end()) {
    finding.severity = Warning;
    finding.remedy = tr("See what it says: journalctl --user --unit hushmoded");
    return finding;
  }
  finding.severity = remedy->needed(needs);
  finding.remedy = isLocked(service.detail)
                       ? tr("It is locked for this user: ask who administers this system")
                       : tr(remedy->text, HUSHMODE_DAEMON, shellWord((calendarFolder() / "NAME").string()));
  return finding;
}

}  // namespace hushmode::cli
