#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>

#include "app/commands/commands.h"
#include "app/commands/open_model.h"
#include "app/output/text.h"

int main(int argc, char** argv) {
  using namespace corvanta::app;
  // Nothing is read from stdin, and a model may print a million lines.
  std::ios::sync_with_stdio(false);
  // A file that grows beyond the process's limit is one that can't be written, and no end.
  std::signal(SIGXFSZ, SIG_IGN);
  // Drivers print reasons of their own beside the one line of the program's.
  setenv("EGL_LOG_LEVEL", "fatal", 0);
  setenv("LIBGL_DEBUG", "quiet", 0);
  int status = NS_DONE;
  try {
    CLI::App program("Builds scenes from model files, prints them and watches them change.",
                     "corvanta");
    program.require_subcommand(1);
    for (NAddCommand* const add : kCommands) add(program, status);
    for (CLI::App* const command : program.get_subcommands({})) AddModelOptions(*command);
    try {
      program.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
      // Asking for help is no error.
      if (error.get_exit_code() != 0) {
        PrintError("options", error.what());
        return NS_OPTIONS;
      }
      program.exit(error);
    }
  } catch (std::exception const& error) {
    PrintError("error", error.what());
    return NS_FILE;
  }
  std::cout.flush();
  if (!std::cout) {
    PrintError("output", "can't be written");
    return NS_FILE;
  }
  return status;
}
