// Inert for now: Do Not Disturb, the status-bar icon, and the volume watch. Their surfaces are declared, everything calls
// them at the right moment, and nothing happens yet.

#include "model/HMProfile.h"
#include "store/HMProfilesManager.h"

namespace hushmode {

void HMProfile::enableORDisableDnD(bool) {}
void HMProfile::showORHideIconsOnSpringBoard(bool) {}
void HMProfile::updateDNDStatus() {}
void HMProfile::updateShowStatuBarState() {}

void HMProfilesManager::loadLibStatusbar() {}
void HMProfilesManager::showORHideIconsOnSpringBoard(bool) {}
void HMProfilesManager::enableORDisableDnD(bool) {}
void HMProfilesManager::enableORDisableDnDForIOS11(bool) {}
void HMProfilesManager::volumeChanged(const platform::Notification&) {}
void HMProfilesManager::updateVolumeInUserDefaults(double) {}
void HMProfilesManager::alertView(const std::shared_ptr<platform::UIAlertView>&, int) {}

std::vector<std::shared_ptr<platform::Alarm>> HMProfilesManager::unloadAllHushmodeAlarms() { return {}; }

}  // namespace hushmode
