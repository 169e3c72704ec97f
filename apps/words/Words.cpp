#include "apps/words/Words.h"

#include "devices/words/Text.h"

namespace hushmode {

std::string inWords(const host::Message& message) {
  return message.in([](const char* english) { return ::gettext(english); });
}

std::string inWords(const host::Reason& reason) { return inWords(host::messageOf(reason)); }

std::string serviceText(const std::string& name) {
  static constexpr const char* names[] = {HUSHMODE_MARKED("alarms"),
                                          HUSHMODE_MARKED("appearance"),
                                          HUSHMODE_MARKED("calendar folder"),
                                          HUSHMODE_MARKED("calendar service"),
                                          HUSHMODE_MARKED("do not disturb"),
                                          HUSHMODE_MARKED("networks"),
                                          HUSHMODE_MARKED("notifications between programs"),
                                          HUSHMODE_MARKED("questions"),
                                          HUSHMODE_MARKED("screen"),
                                          HUSHMODE_MARKED("sleep and lock"),
                                          HUSHMODE_MARKED("status icon"),
                                          HUSHMODE_MARKED("tones"),
                                          HUSHMODE_MARKED("vibrate switches"),
                                          HUSHMODE_MARKED("vibration"),
                                          HUSHMODE_MARKED("volumes"),
                                          HUSHMODE_MARKED("wake-ups")};
  for (const char* each : names) {
    if (name == each) return tr(each);
  }
  return name;
}

}  // namespace hushmode
