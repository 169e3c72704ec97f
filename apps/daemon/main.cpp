// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

// hushmoded: Hush Mode at work on this phone.

#include "apps/daemon/Daemon.h"
#include "apps/daemon/Rescue.h"
#include "apps/usage/Help.h"
#include "apps/usage/WrongUse.h"
#include "apps/words/Language.h"
#include "devices/words/Text.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <giomm/init.h>
#include <glib-unix.h>
#include <glibmm/exceptionhandler.h>
#include <glibmm/init.h>
#include <glibmm/miscutils.h>
#include <iostream>
#include <locale>
#include <unistd.h>

namespace {

constexpr int wrongUse = 2, notStarted = 1, alreadyRunning = 3;  // The last is no reason to try again.

struct Signals {
  hushmode::daemon::Daemon* daemon;
  static gboolean stop(gpointer signals) {
    static_cast<Signals*>(signals)->daemon->stop(0);
    return G_SOURCE_CONTINUE;
  }
};

}  // namespace

int main(int argc, char** argv) {
  namespace cli = hushmode::cli;
  using hushmode::tr;
  using hushmode::devices::Priority;
  hushmode::useLanguageOfEnvironment();
  Glib::set_init_to_users_preferred_locale(false);  // It would be set anew, numbers included.
  Glib::set_init_to_users_preferred_locale(false);  // That is set already, as far as the system has it.
  Gio::init();

  hushmode::daemon::Options options;
  options.calendarFolder = std::filesystem::path(Glib::get_user_data_dir()) / "hushmode" / "calendars";
  options.dataFolder = HUSHMODE_DATA_FOLDER;
  CLI::App program(tr("Silences this phone by calendar, clock and network, and puts everything back afterwards."),
                   "hushmoded");
  program.formatter(std::make_shared<cli::HelpFormatter>(cli::helpColumns(), cli::Terminal::of(STDOUT_FILENO)));
  program.option_defaults()->disable_flag_override();  // "--verbose=3" is a slip.
  program.set_help_flag("-h,--help", tr("Print this help"));
  program.set_version_flag("--version", "hushmoded " HUSHMODE_VERSION, tr("Print the version"));
  bool rescue = false, dryRun = false;
  auto* rescuing =
      program.add_flag("--rescue", rescue,
                       tr("Put back what a daemon that died has left changed, print what was as JSON, and end; for "
                          "\"hushmode rescue\""));
  program.add_flag("--dry-run", dryRun, tr("With --rescue: only look"))->needs(rescuing);
  program.add_option("--calendars", options.calendarFolder, tr("The folder of iCalendar files"))->type_name("FOLDER");
  program.add_option("--data", options.dataFolder, tr("Where the string tables are"))->type_name("FOLDER");
  program.add_flag("-v,--verbose", options.verbose,
                   tr("Say the library's decisions, too; they name events and networks"));
  program.footer(
      tr("It is started by the session (systemd, D-Bus or autostart), not by hand, and ends with SIGTERM.\n"
         "Programs talk to it on the session bus: com.quorvel.Hushmode.\n\n"
         "Example:\n"
         "  hushmoded --verbose --calendars ~/.calendars"));
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return program.exit(error);  // --help and --version are no mistakes.
    std::cerr << "hushmoded: " << cli::harmless(cli::wrongUse(program, error)) << '\n';
    return wrongUse;
  }

  if (rescue) {
    const auto most = options.verbose ? Priority::Debug : Priority::Error;
    std::cout << hushmode::daemon::rescueReport({options.calendarFolder, options.dataFolder, dryRun},
                                                hushmode::devices::journalSink(STDERR_FILENO, most))
              << std::endl;
    return 0;
  }

  const auto sink =
      hushmode::devices::journalSink(STDERR_FILENO, options.verbose ? Priority::Debug : Priority::Information);
  // What a callback of the main loop throws ends that callback, not the daemon.
  Glib::add_exception_handler([sink] {
    try {
      throw;
    } catch (const std::exception& problem) {
      sink(Priority::Error, tr("a callback failed: {}", problem.what()));
    }
  });
  const auto loop = Glib::MainLoop::create();
  int code = 0;
  try {
    hushmode::daemon::Daemon daemon(options, sink, [&](int ended) {
      code = ended;
      loop->quit();
    });
    Signals signals{&daemon};
    const guint terminated = g_unix_signal_add(SIGTERM, Signals::stop, &signals);
    const guint interrupted = g_unix_signal_add(SIGINT, Signals::stop, &signals);
    daemon.start();
    loop->run();
    g_source_remove(terminated);
    g_source_remove(interrupted);
  } catch (const hushmode::daemon::AlreadyRunning& other) {
    sink(Priority::Notice, other.what());
    return alreadyRunning;
  } catch (const std::exception& problem) {
    sink(Priority::Error, tr("cannot start: {}", problem.what()));
    return notStarted;
  }
  return code;
}
