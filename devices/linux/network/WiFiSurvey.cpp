// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/network/WiFiSurvey.h"

#include "devices/linux/network/SsidText.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace hushmode::devices {

using platform::Date;

namespace {

const BusClient::Object manager{"/org/freedesktop/NetworkManager", "org.freedesktop.NetworkManager"};
const BusClient::Object settings{"/org/freedesktop/NetworkManager/Settings", "org.freedesktop.NetworkManager.Settings"};
constexpr const char* connectionInterface = "org.freedesktop.NetworkManager.Settings.Connection";
constexpr const char* activeInterface = "org.freedesktop.NetworkManager.Connection.Active";
constexpr const char* wireless = "802-11-wireless";

constexpr std::uint32_t activated = 2;  // NM_ACTIVE_CONNECTION_STATE_ACTIVATED
// A system bus lets a connection wait for 128 answers by default, and there are others on it.
constexpr std::size_t mostUnderWay = 16;
constexpr std::uint64_t year10000 = 253402300800;  // Later is no date.

using Paths = std::vector<Glib::DBusObjectPathString>;
using Settings = std::map<Glib::ustring, Properties>;

std::vector<std::string> firstOf(const Paths& paths, std::size_t most) {
  return {paths.begin(), paths.begin() + static_cast<std::ptrdiff_t>(std::min(paths.size(), most))};
}

std::optional<Date> dateOf(std::optional<std::uint64_t> timestamp) {
  if (!timestamp || *timestamp == 0 || *timestamp >= year10000) return std::nullopt;
  return Date(static_cast<double>(*timestamp));
}

void takeLater(std::optional<Date>& date, const std::optional<Date>& other) {
  if (other && (!date || *other > *date)) date = other;
}

}  // namespace

WiFiSurvey::WiFiSurvey(BusClient& client, Done done, Failed failed)
    : done_(std::move(done)), failed_(std::move(failed)), client_(client.another()) {
  client_->call(
      settings, "ListConnections", {}, "(ao)",
      [this](const BusClient::Reply& reply) {
        readConnections(firstOf(valueAt<Paths>(reply.values, 0).value_or(Paths()), mostConnections));
      },
      [this](const BusClient::Failure& failure) { fail(failure); });
}

void WiFiSurvey::readConnections(std::vector<std::string> paths) {
  paths_ = std::move(paths);
  if (paths_.empty()) return readManager();
  while (next_ < paths_.size() && underWay_ < mostUnderWay) readNextConnection();
}

void WiFiSurvey::readNextConnection() {
  const std::string& path = paths_[next_++];
  ++underWay_;
  const auto goOn = [this] {
    --underWay_;
    if (next_ < paths_.size()) {
      readNextConnection();
    } else if (underWay_ == 0) {
      readManager();
    }
  };
  client_->call(
      {path, connectionInterface}, "GetSettings", {}, "(a{sa{sv}})",
      [this, path, goOn](const BusClient::Reply& reply) {
        if (auto connection = connectionFrom(reply.values)) connections_.emplace(path, std::move(*connection));
        goOn();
      },
      [this, goOn](const BusClient::Failure& failure) {
        // Refused: it was removed meanwhile, or is none of this user's.
        failure.refused ? goOn() : fail(failure);
      });
}

std::optional<WiFiSurvey::Connection> WiFiSurvey::connectionFrom(const Glib::VariantContainerBase& values) {
  const auto all = valueAt<Settings>(values, 0);
  if (!all || !all->contains("connection") || !all->contains(wireless)) return std::nullopt;
  const Properties& general = all->at("connection");
  const Properties& radio = all->at(wireless);
  if (textOf(general, "type") != wireless) return std::nullopt;
  if (textOf(radio, "mode") == "ap") return std::nullopt;
  const auto bytes = valueOf<std::vector<std::uint8_t>>(radio, "ssid");
  if (!bytes || bytes->empty() || bytes->size() > longestSsid) return std::nullopt;
  return Connection{ssidText(std::string(bytes->begin(), bytes->end())),
                    dateOf(valueOf<std::uint64_t>(general, "timestamp")),
                    valueOf<bool>(general, "autoconnect").value_or(true)};
}

void WiFiSurvey::readManager() {
  client_->read(
      manager,
      [this](const Properties& properties) {
        isStartingUp_ = valueOf<bool>(properties, "Startup").value_or(false);
        const auto active = valueOf<Paths>(properties, "ActiveConnections");
        if (!active) return fail({tr("it does not list its active connections"), false});
        activePaths_ = firstOf(*active, mostActiveConnections);
        readActive(0);
      },
      [this](const BusClient::Failure& failure) { fail(failure); });
}

void WiFiSurvey::readActive(std::size_t index) {
  if (index >= activePaths_.size()) return finish(std::nullopt);
  client_->read(
      {activePaths_[index], activeInterface},
      [this, index](const Properties& properties) {
        const auto connection = valueOf<Glib::DBusObjectPathString>(properties, "Connection");
        const bool isActivated = valueOf<std::uint32_t>(properties, "State") == activated;
        if (isActivated && connection && connections_.contains(*connection)) {
          finish(*connection);
        } else {
          readActive(index + 1);
        }
      },
      [this, index](const BusClient::Failure& failure) {
        // Refused: it ended meanwhile.
        failure.refused ? readActive(index + 1) : fail(failure);
      });
}

void WiFiSurvey::finish(std::optional<std::string> joinedPath) {
  WiFiState state;
  state.isStartingUp = isStartingUp_;
  if (joinedPath) state.joined = connections_.at(*joinedPath).ssid;
  std::map<std::string, std::size_t> places;
  for (const std::string& path : paths_) {
    const auto found = connections_.find(path);
    if (found == connections_.end()) continue;
    const Connection& connection = found->second;
    const auto [place, isNew] = places.emplace(connection.ssid, state.known.size());
    if (isNew) state.known.push_back({connection.ssid, std::nullopt, std::nullopt});
    KnownNetwork& network = state.known[place->second];
    takeLater(network.lastJoined, connection.timestamp);
    if (connection.joinsByItself) takeLater(network.lastAutoJoined, connection.timestamp);
  }
  const Done done = std::move(done_);  // Whoever is told ends this survey.
  done(std::move(state));
}

void WiFiSurvey::fail(const BusClient::Failure& failure) {
  const Failed failed = std::move(failed_);
  failed(failure);
}

}  // namespace hushmode::devices
