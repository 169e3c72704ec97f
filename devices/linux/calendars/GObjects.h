// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <gio/gio.h>
#include <glibmm/exceptionhandler.h>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

/// What C++ needs to live with libraries that are written for GObject in C.
namespace hushmode::devices {

struct Unreference {
  void operator()(void* object) const { g_object_unref(object); }
};
/// A reference that is given back at the end.
template <class Object>
using GObjectPointer = std::unique_ptr<Object, Unreference>;

/// Another reference to the object; null stays null.
template <class Object>
GObjectPointer<Object> referenceTo(Object* object) {
  return GObjectPointer<Object>(object != nullptr ? static_cast<Object*>(g_object_ref(object)) : nullptr);
}

/// An error that a call may leave behind.
class CallError {
 public:
  CallError() = default;
  ~CallError() { g_clear_error(&error_); }
  CallError(const CallError&) = delete;
  CallError& operator=(const CallError&) = delete;

  GError** place() { return &error_; }
  bool is(GQuark domain, int code) const { return g_error_matches(error_, domain, code); }
  std::string text() const { return error_ != nullptr ? error_->message : "no reason given"; }

 private:
  GError* error_ = nullptr;
};

/// What is done with the result of an asynchronous call. It is called once, with the object that the call was made on.
using ResultHandler = std::function<void(GObject* source, GAsyncResult* result)>;

/// The two last arguments of an asynchronous call, for which `handler` is to run.
inline void runResultHandler(GObject* source, GAsyncResult* result, void* data) {
  const std::unique_ptr<ResultHandler> handler(static_cast<ResultHandler*>(data));
  try {
    (*handler)(source, result);
  } catch (...) {
    Glib::exception_handlers_invoke();  // No exception may cross the C code that called.
  }
}
inline void* resultHandler(ResultHandler handler) { return new ResultHandler(std::move(handler)); }

/// Hears a signal of an object for as long as it lives. `Arguments` are those of the signal after the object.
template <class... Arguments>
class SignalHandler {
  static_assert((std::is_pointer_v<Arguments> && ...));

 public:
  SignalHandler(void* object, const char* signal, std::function<void(Arguments...)> handler)
      : object_(referenceTo(static_cast<GObject*>(object))),
        handler_(std::make_unique<std::function<void(Arguments...)>>(std::move(handler))),
        id_(g_signal_connect(object_.get(), signal, reinterpret_cast<GCallback>(&SignalHandler::run), handler_.get())) {
  }
  ~SignalHandler() { g_signal_handler_disconnect(object_.get(), id_); }
  SignalHandler(const SignalHandler&) = delete;
  SignalHandler& operator=(const SignalHandler&) = delete;

 private:
  static void run(GObject*, Arguments... arguments, void* data) {
    try {
      const auto handler = *static_cast<std::function<void(Arguments...)>*>(data);  // It may end this connection.
      handler(arguments...);
    } catch (...) {
      Glib::exception_handlers_invoke();
    }
  }

  GObjectPointer<GObject> object_;
  std::unique_ptr<std::function<void(Arguments...)>> handler_;
  gulong id_;
};

}  // namespace hushmode::devices
