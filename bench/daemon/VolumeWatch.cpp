// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// Prints a line for each change of a sink's volume: the wall clock's seconds when the sound server told it, the sink's
// name, and the volume from 0 to 1.

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <map>
#include <pulse/context.h>
#include <pulse/introspect.h>
#include <pulse/mainloop.h>
#include <pulse/operation.h>
#include <pulse/subscribe.h>

namespace {

double now() {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// A question that the server was asked when it told of a change.
struct Question {
  double told;
};

std::map<std::uint32_t, pa_volume_t> known;

void answered(pa_context*, const pa_sink_info* sink, int, void* data) {
  auto* question = static_cast<Question*>(data);
  if (sink == nullptr) {
    delete question;
    return;
  }
  const pa_volume_t volume = pa_cvolume_max(&sink->volume);
  const auto before = known.find(sink->index);
  if (before != known.end() && before->second != volume) {
    std::printf("%.6f %s %.3f\n", question->told, sink->name, static_cast<double>(volume) / PA_VOLUME_NORM);
    std::fflush(stdout);
  }
  known[sink->index] = volume;
}

void drop(pa_operation* operation) {
  if (operation != nullptr) pa_operation_unref(operation);
}

void changed(pa_context* context, pa_subscription_event_type_t, std::uint32_t sink, void*) {
  drop(pa_context_get_sink_info_by_index(context, sink, answered, new Question{now()}));
}

void stateChanged(pa_context* context, void* loop) {
  const pa_context_state_t state = pa_context_get_state(context);
  if (!PA_CONTEXT_IS_GOOD(state)) pa_mainloop_quit(static_cast<pa_mainloop*>(loop), 1);
  if (state != PA_CONTEXT_READY) return;
  pa_context_set_subscribe_callback(context, changed, nullptr);
  drop(pa_context_subscribe(context, PA_SUBSCRIPTION_MASK_SINK, nullptr, nullptr));
  drop(pa_context_get_sink_info_list(context, answered, new Question{now()}));
}

}  // namespace

int main() {
  pa_mainloop* loop = pa_mainloop_new();
  pa_context* context = pa_context_new(pa_mainloop_get_api(loop), "volume watch");
  pa_context_set_state_callback(context, stateChanged, loop);
  int result = 1;
  if (pa_context_connect(context, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) >= 0) pa_mainloop_run(loop, &result);
  std::fprintf(stderr, "the sound server is gone\n");
  pa_context_unref(context);
  pa_mainloop_free(loop);
  return result;
}
