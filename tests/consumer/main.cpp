#include <store/HMProfilesManager.h>
#include <util/HMUtils.h>

#include <cstdio>

int main() {
  hushmode::platform::Dictionary settings{{"com.quorvel.hushmode.enabled", true}};
  std::printf("%zu setting, version %.1f\n", settings.size(), hushmode::systemVersionNumber("13.1.2"));
  return settings.find("com.quorvel.hushmode.enabled") ? 0 : 1;
}
