// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// The least that can set a volume at a second: one timer, one call. What the daemon is compared with.
//
// usage: bench_volume_timer SINK FIRST COUNT PERIOD: silent at the second FIRST (since 1970) and every PERIOD seconds
// after it, COUNT times, loud again a second later.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>
#include <pulse/volume.h>
#include <sys/timerfd.h>
#include <unistd.h>

namespace {

constexpr pa_volume_t kLoud = PA_VOLUME_NORM * 6 / 10;

struct Timer {
  const char* sink;
  time_t first;
  int count, period;
  pa_mainloop* loop;
  pa_context* context = nullptr;
  int descriptor = timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
  int turn = 0;  ///< Of two for each period.

  void arm() const {
    itimerspec when{};
    when.it_value.tv_sec = first + turn / 2 * period + turn % 2;
    timerfd_settime(descriptor, TFD_TIMER_ABSTIME, &when, nullptr);
  }

  void set(pa_volume_t level) const {
    pa_cvolume volume;
    pa_cvolume_set(&volume, 2, level);
    pa_operation* set = pa_context_set_sink_volume_by_name(context, sink, &volume, nullptr, nullptr);
    if (set != nullptr) pa_operation_unref(set);
  }

  void fire() {
    std::uint64_t expirations = 0;
    if (read(descriptor, &expirations, sizeof expirations) != sizeof expirations) return;
    if (turn == 2 * count) return pa_mainloop_quit(loop, EXIT_SUCCESS);
    set(turn % 2 == 0 ? PA_VOLUME_MUTED : kLoud);
    ++turn;
    arm();
  }
};

void fired(pa_mainloop_api*, pa_io_event*, int, pa_io_event_flags_t, void* timer) {
  static_cast<Timer*>(timer)->fire();
}

void stateChanged(pa_context* context, void* data) {
  auto& timer = *static_cast<Timer*>(data);
  const pa_context_state_t state = pa_context_get_state(context);
  if (!PA_CONTEXT_IS_GOOD(state)) pa_mainloop_quit(timer.loop, EXIT_FAILURE);
  if (state != PA_CONTEXT_READY) return;
  timer.set(kLoud);
  timer.arm();
}

}  // namespace

int main(int count, char** words) {
  if (count != 5) {
    std::fprintf(stderr, "usage: %s SINK FIRST COUNT PERIOD\n", words[0]);
    return 2;
  }
  pa_mainloop* loop = pa_mainloop_new();
  pa_mainloop_api* api = pa_mainloop_get_api(loop);
  Timer timer{words[1], std::atol(words[2]), std::atoi(words[3]), std::atoi(words[4]), loop};
  timer.context = pa_context_new(api, "volume timer");
  pa_context_set_state_callback(timer.context, stateChanged, &timer);
  api->io_new(api, timer.descriptor, PA_IO_EVENT_INPUT, fired, &timer);
  int result = EXIT_FAILURE;
  if (pa_context_connect(timer.context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0) pa_mainloop_run(loop, &result);
  pa_context_unref(timer.context);
  pa_mainloop_free(loop);
  close(timer.descriptor);
  return result;
}
