// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "platform/AudioToolbox.h"
#include "platform/Celestial.h"
#include "platform/ControlCenter.h"
#include "platform/CoreFoundation.h"
#include "platform/Device.h"
#include "platform/EventKit.h"
#include "platform/Foundation.h"
#include "platform/MobileTimer.h"
#include "platform/MobileWiFi.h"
#include "platform/PersistentConnection.h"
#include "platform/SpringBoard.h"
#include "platform/StatusBar.h"
#include "platform/ToneLibrary.h"
#include "platform/UIKit.h"

// One home for each interface's type information.
namespace hushmode::platform {

SystemLog::~SystemLog() = default;
Calendar::~Calendar() = default;
PropertyListFiles::~PropertyListFiles() = default;
UserDefaults::~UserDefaults() = default;
NotificationCenter::~NotificationCenter() = default;
Bundle::~Bundle() = default;
NSTimer::~NSTimer() = default;
NSDateFormatter::~NSDateFormatter() = default;
Foundation::~Foundation() = default;
RunLoop::~RunLoop() = default;
CoreFoundation::~CoreFoundation() = default;
EKSource::~EKSource() = default;
EKCalendar::~EKCalendar() = default;
EKEvent::~EKEvent() = default;
EKEventStore::~EKEventStore() = default;
EventKit::~EventKit() = default;
WiFiNetwork::~WiFiNetwork() = default;
WiFiDeviceClient::~WiFiDeviceClient() = default;
WiFiManagerClient::~WiFiManagerClient() = default;
MobileWiFi::~MobileWiFi() = default;
PCSimpleTimer::Class::~Class() = default;
PCSimpleTimer::~PCSimpleTimer() = default;
AVSystemController::~AVSystemController() = default;
AVController::Class::~Class() = default;
AVController::~AVController() = default;
Celestial::~Celestial() = default;
TLAlert::Class::~Class() = default;
TLAlert::~TLAlert() = default;
Alarm::~Alarm() = default;
AlarmManager::Class::~Class() = default;
AlarmManager::~AlarmManager() = default;
AudioToolbox::~AudioToolbox() = default;
SpringBoard::Class::~Class() = default;
SpringBoard::~SpringBoard() = default;
VolumeControl::Class::~Class() = default;
VolumeControl::~VolumeControl() = default;
SBBacklightController::Class::~Class() = default;
SBBacklightController::~SBBacklightController() = default;
SBControlCenterController::Class::~Class() = default;
SBControlCenterController::~SBControlCenterController() = default;
CCUIPageContainerViewController::~CCUIPageContainerViewController() = default;
CCUISystemControlsPageViewController::~CCUISystemControlsPageViewController() = default;
CCUISettingsSectionController::~CCUISettingsSectionController() = default;
SBCCSettingsSectionController::~SBCCSettingsSectionController() = default;
DoNotDisturbSetting::~DoNotDisturbSetting() = default;
SBCCDoNotDisturbSetting::~SBCCDoNotDisturbSetting() = default;
CCUIDoNotDisturbSetting::~CCUIDoNotDisturbSetting() = default;
CCUIButtonModuleView::~CCUIButtonModuleView() = default;
CCUIToggleModule::~CCUIToggleModule() = default;
CCUIModuleInstance::~CCUIModuleInstance() = default;
CCUIModuleInstanceManager::Class::~Class() = default;
CCUIModuleInstanceManager::~CCUIModuleInstanceManager() = default;
LSStatusBarItem::Class::~Class() = default;
LSStatusBarItem::~LSStatusBarItem() = default;
UIView::~UIView() = default;
UIApplication::~UIApplication() = default;
UIAlertView::~UIAlertView() = default;
UIImage::~UIImage() = default;
UIGraphicsImageContext::~UIGraphicsImageContext() = default;
UIKit::~UIKit() = default;
Device::~Device() = default;

}  // namespace hushmode::platform
