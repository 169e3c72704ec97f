// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include "devices/linux/base/Variants.h"

#include <chrono>
#include <functional>
#include <giomm/cancellable.h>
#include <giomm/dbusconnection.h>
#include <giomm/unixfdlist.h>
#include <memory>
#include <string>
#include <vector>

namespace hushmode::devices {

/// One owner of a name on a bus, as its client sees it: calls that nobody waits for, and signals. Every callback comes
/// from the main loop; none comes once the client is gone.
class BusClient {
 public:
  /// How long a service may take to answer.
  static constexpr std::chrono::milliseconds answerLimit = std::chrono::seconds(10);

  /// `owner` is the unique name of the other side, so that nobody else's signals are heard.
  BusClient(Glib::RefPtr<Gio::DBus::Connection> connection, std::string owner,
            std::chrono::milliseconds limit = answerLimit);
  ~BusClient();
  BusClient(const BusClient&) = delete;
  BusClient& operator=(const BusClient&) = delete;

  /// An object of the other side, and one of its interfaces.
  struct Object {
    std::string path, interface;
  };
  struct Reply {
    Glib::VariantContainerBase values;          ///< The tuple of what the method returns, of the type asked for.
    Glib::RefPtr<Gio::UnixFDList> descriptors;  ///< Null when none came with it.
  };
  struct Failure {
    std::string reason;
    bool refused;  ///< The service itself answered with an error; else there was no answer that could be understood.
  };
  using OnReply = std::function<void(const Reply&)>;
  using OnFailure = std::function<void(const Failure&)>;

  /// Calls a method. Afterwards one of the two callbacks (empty for none) runs, once: `onFailure` for an error, for a
  /// reply that is not of `replyType`, and when the time is up.
  void call(const Object& object, const std::string& method, const Glib::VariantContainerBase& arguments,
            const std::string& replyType, OnReply onReply, OnFailure onFailure = {});

  /// Hears a signal whose values are of `valuesType`, from now on; those of other types are passed over. An empty path
  /// means every object.
  void hear(const Object& object, const std::string& signal, const std::string& valuesType,
            std::function<void(const std::string& path, const Glib::VariantContainerBase& values)> onSignal);

  using OnProperties = std::function<void(const Properties&)>;
  /// Reads all properties of an object, and goes on with those that change. `onFailure` is about the reading.
  void follow(const Object& object, const OnProperties& onProperties, OnFailure onFailure = {});
  /// Reads all properties of an object once.
  void read(const Object& object, OnProperties onProperties, OnFailure onFailure = {});

  const std::string& owner() const { return owner_; }
  /// Another client of the same owner, with a life of its own.
  std::unique_ptr<BusClient> another() const { return std::make_unique<BusClient>(connection_, owner_, limit_); }

 private:
  Glib::RefPtr<Gio::DBus::Connection> connection_;
  std::string owner_;
  std::chrono::milliseconds limit_;
  Glib::RefPtr<Gio::Cancellable> ended_ = Gio::Cancellable::create();
  std::vector<guint> subscriptions_;
};

}  // namespace hushmode::devices
