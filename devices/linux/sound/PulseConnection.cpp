// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "devices/linux/sound/PulseConnection.h"

#include "devices/linux/sound/Later.h"
#include "devices/words/Text.h"

#include <algorithm>
#include <utility>

namespace hushmode::devices {

namespace {

constexpr unsigned firstRetryMilliseconds = 250;
constexpr unsigned lastRetryMilliseconds = 16'000;
constexpr unsigned answerLimitMilliseconds = 5'000;

std::string nameOf(const pa_server_info& server) {
  const std::string name = server.server_name ? server.server_name : "";
  const std::string version = server.server_version ? server.server_version : "";
  // PipeWire names itself ("PulseAudio (on PipeWire 0.3.65)"); the version beside that is the one that it stands in
  // for.
  if (name.find("PipeWire") != std::string::npos) return name;
  return "PulseAudio" + (version.empty() ? "" : " " + version);
}

}  // namespace

PulseConnection::PulseConnection(Handlers handlers)
    : handlers_(std::move(handlers)), loop_(pa_glib_mainloop_new(nullptr)), retryMilliseconds_(firstRetryMilliseconds) {
  retry_ = callLater(0, [this] { connect(); });
}

PulseConnection::~PulseConnection() {
  retry_.disconnect();
  drop();
}

void PulseConnection::connect() {
  context_.reset(pa_context_new(pa_glib_mainloop_get_api(loop_.get()), "Hush Mode"));
  if (!context_) return lose(tr("PulseAudio cannot be reached: out of memory"));
  pa_context_set_state_callback(
      context_.get(), [](pa_context*, void* self) { static_cast<PulseConnection*>(self)->stateChanged(); }, this);
  limitTheWait();
  // A failure is told through the state as well, and before this returns.
  pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
}

void PulseConnection::stateChanged() {
  switch (pa_context_get_state(context_.get())) {
    case PA_CONTEXT_FAILED:
    case PA_CONTEXT_TERMINATED:
      return lose(tr("PulseAudio is not running"));
    case PA_CONTEXT_READY:
      return await(pa_context_get_server_info(
          context_.get(),
          [](pa_context*, const pa_server_info* server, void* self) {
            static_cast<PulseConnection*>(self)->greeted(server);
          },
          this));
    default:
      return;
  }
}

void PulseConnection::greeted(const pa_server_info* server) {
  answered();
  if (!server) return lose(tr("PulseAudio does not say what it is"));
  serverName_ = nameOf(*server);
  retryMilliseconds_ = firstRetryMilliseconds;
  isReady_ = true;
  handlers_.ready();
}

void PulseConnection::await(pa_operation* operation) {
  if (!operation) return;  // Refused since the connection is failing, which its state tells.
  pa_operation_unref(operation);
  if (unanswered_++ == 0) limitTheWait();
}

void PulseConnection::answered() {
  limit_.disconnect();
  if (--unanswered_ > 0) limitTheWait();
}

void PulseConnection::limitTheWait() {
  limit_.disconnect();
  limit_ = callLater(answerLimitMilliseconds, [this] { lose(tr("PulseAudio does not answer")); });
}

void PulseConnection::drop() {
  limit_.disconnect();
  unanswered_ = 0;
  isReady_ = false;
  if (!context_) return;
  // Its end is no news any more; operations that are still under way are dropped with it, and call nothing.
  pa_context_set_state_callback(context_.get(), nullptr, nullptr);
  pa_context_disconnect(context_.get());
  context_.reset();
}

void PulseConnection::lose(const std::string& why) {
  drop();
  retry_.disconnect();
  retry_ = callLater(retryMilliseconds_, [this] { connect(); });
  retryMilliseconds_ = std::min(2 * retryMilliseconds_, lastRetryMilliseconds);
  handlers_.lost(why);
}

}  // namespace hushmode::devices
