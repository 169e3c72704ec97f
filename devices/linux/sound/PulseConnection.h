// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <memory>
#include <pulse/context.h>
#include <pulse/glib-mainloop.h>
#include <pulse/introspect.h>
#include <sigc++/connection.h>
#include <string>

namespace hushmode::devices {

/// A connection to the user's sound server (PulseAudio, or PipeWire in its place) on the default main loop. It is made
/// from the main loop, and made again whenever it is lost: at first soon, then with longer and longer waits. It never
/// starts a server.
class PulseConnection {
 public:
  struct Handlers {
    std::function<void()> ready;  ///< The server answers: `context` can be used.
    /// It could not be reached, or does not answer any more; why, for people. Also after each attempt that failed.
    std::function<void(const std::string& why)> lost;
  };

  explicit PulseConnection(Handlers handlers);
  ~PulseConnection();
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;

  /// Null unless the server answers.
  pa_context* context() const { return isReady_ ? context_.get() : nullptr; }
  /// The server's name and version ("PulseAudio 16.1"); empty before the first answer.
  const std::string& serverName() const { return serverName_; }
  bool isPipeWire() const { return serverName_.find("PipeWire") != std::string::npos; }

  /// Takes over an operation that was started on `context`: `answered` is to be called at its end. A server that leaves
  /// one unanswered for too long is given up, and tried again.
  void await(pa_operation* operation);
  void answered();

 private:
  struct Free {
    void operator()(pa_glib_mainloop* loop) const { pa_glib_mainloop_free(loop); }
    void operator()(pa_context* context) const { pa_context_unref(context); }
  };

  void connect();
  void stateChanged();
  void greeted(const pa_server_info* server);
  void drop();
  void lose(const std::string& why);
  void limitTheWait();

  Handlers handlers_;
  std::unique_ptr<pa_glib_mainloop, Free> loop_;
  std::unique_ptr<pa_context, Free> context_;
  bool isReady_ = false;
  std::string serverName_;
  unsigned unanswered_ = 0;
  unsigned retryMilliseconds_;
  sigc::connection retry_, limit_;
};

}  // namespace hushmode::devices
