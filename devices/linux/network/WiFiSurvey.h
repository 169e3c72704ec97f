// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/BusClient.h"
#include "platform/Date.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace hushmode::devices {

/// A network that the phone remembers.
struct KnownNetwork {
  std::string ssid;  ///< As `ssidText` writes it.
  std::optional<platform::Date> lastJoined, lastAutoJoined;
  bool operator==(const KnownNetwork&) const = default;
};

/// What NetworkManager knows about WiFi.
struct WiFiState {
  /// One for each name, in NetworkManager's order; of several connections to one network the latest dates count.
  std::vector<KnownNetwork> known;
  std::optional<std::string> joined;
  /// NetworkManager has just been started, and may still join a network by itself.
  bool isStartingUp = false;
  bool operator==(const WiFiState&) const = default;
};

/// One look at NetworkManager: reads all that it knows about WiFi, a few answers at a time.
///
/// Connections of type 802-11-wireless are networks, but for the phone's own hotspot (mode "ap"). Their "timestamp"
/// (absent or 0: never) is the date of the last join; for those that join by themselves (no "autoconnect" means yes) it
/// is that of the last automatic one too, since NetworkManager does not tell who asked. Joined is the network of the
/// first active connection in state 2, activated.
class WiFiSurvey {
 public:
  using Done = std::function<void(WiFiState)>;
  using Failed = BusClient::OnFailure;

  /// Begins. Unless the survey is ended before, one of the two callbacks runs, from the main loop, and ends it.
  WiFiSurvey(BusClient& client, Done done, Failed failed);

  /// At most so many connections are read, of what the service lists.
  static constexpr std::size_t mostConnections = 1000;
  static constexpr std::size_t mostActiveConnections = 64;

 private:
  struct Connection {
    std::string ssid;
    std::optional<platform::Date> timestamp;
    bool joinsByItself = true;
  };

  void readConnections(std::vector<std::string> paths);
  void readNextConnection();
  void readManager();
  void readActive(std::size_t index);
  void finish(std::optional<std::string> joinedPath);
  void fail(const BusClient::Failure& failure);
  static std::optional<Connection> connectionFrom(const Glib::VariantContainerBase& settings);

  Done done_;
  Failed failed_;
  bool isStartingUp_ = false;
  std::vector<std::string> paths_, activePaths_;
  std::size_t next_ = 0, underWay_ = 0;
  std::map<std::string, Connection> connections_;  ///< By path.
  std::unique_ptr<BusClient> client_;              ///< The last: nothing comes after it.
};

}  // namespace hushmode::devices
