// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "tests/devices/linux/sound/SoundTest.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <giomm/init.h>
#include <glibmm/init.h>
#include <glibmm/main.h>
#include <glibmm/spawn.h>
#include <iterator>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

namespace hushmode::devices {
namespace {

constexpr int limitSeconds = 30;

/// giomm before the first test.
const bool giommIsReady = [] {
  Gio::init();
  return true;
}();

std::vector<std::string> commandLineOf(int process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/cmdline", std::ios::binary);
  std::vector<std::string> arguments;
  for (std::string argument; std::getline(file, argument, '\0');) arguments.push_back(argument);
  return arguments;
}

}  // namespace

std::string run(const std::vector<std::string>& arguments) {
  Glib::Pid process;
  int output = -1;
  Glib::spawn_async_with_pipes("", arguments, Glib::SpawnFlags::SEARCH_PATH | Glib::SpawnFlags::DO_NOT_REAP_CHILD, {},
                               &process, nullptr, &output, nullptr);
  bool ended = false;
  int status = -1;
  auto watch = Glib::signal_child_watch().connect(
      [&](Glib::Pid, int how) {
        ended = true;
        status = how;
      },
      process);
  EXPECT_TRUE(runUntil([&ended] { return ended; })) << arguments.front() << " does not end";
  std::string text;
  for (char buffer[4096];;) {
    const ssize_t count = ::read(output, buffer, sizeof buffer);
    if (count <= 0) break;
    text.append(buffer, static_cast<std::size_t>(count));
  }
  ::close(output);
  EXPECT_EQ(status, 0) << arguments.front() << ": " << text;
  return text;
}

int pulseAudioProcess() {
  const int client = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/pulse/native";
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ucred listener{};
  socklen_t size = sizeof listener;
  const bool found = ::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 &&
                     ::getsockopt(client, SOL_SOCKET, SO_PEERCRED, &listener, &size) == 0;
  ::close(client);
  if (!found) throw std::runtime_error("nobody listens on " + path);
  return listener.pid;
}

int ownerOfName(const std::string& name) {
  return std::stoi(run({"sh", "-c",
                        "gdbus call --session -d org.freedesktop.DBus -o /org/freedesktop/DBus -m "
                        "org.freedesktop.DBus.GetConnectionUnixProcessID " +
                            name + " | tr -dc '0-9 ' | sed 's/^32 //'"}));
}

void endProcess(int process, int signal) {
  const int descriptor = static_cast<int>(::syscall(SYS_pidfd_open, process, 0));
  ::kill(process, signal);
  pollfd end{descriptor, POLLIN, 0};
  EXPECT_EQ(::poll(&end, 1, 1000 * limitSeconds), 1) << "process " << process << " does not end";
  ::close(descriptor);
  ::waitpid(process, nullptr, WNOHANG);  // If it was ours.
}

std::vector<std::string> killPulseAudio() {
  const int process = pulseAudioProcess();
  std::vector<std::string> arguments = commandLineOf(process);
  endProcess(process, SIGKILL);
  return arguments;
}

int start(const std::vector<std::string>& arguments) {
  std::vector<char*> pointers;
  for (const std::string& argument : arguments) pointers.push_back(const_cast<char*>(argument.c_str()));
  pointers.push_back(nullptr);
  const int process = ::fork();
  if (process == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    ::setenv("PULSE_LOG", "0", 1);
    ::execvp(pointers.front(), pointers.data());
    ::_exit(127);
  }
  return process;
}

}  // namespace hushmode::devices
