#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>

#include "app/commands/commands.h"
#include "app/help/NHelpFormatter.h"
#include "app/help/faults.h"
#include "app/output/text.h"

namespace {

constexpr char kFooter[] = R"(
corvanta help COMMAND tells what a command does, and its options. A picture of a
file of your own:
  corvanta render model.glb -o picture.png

What is found is printed on stdout; notes and errors, a line each, on stderr.
Exit status: 0 all was done; 1 a file couldn't be used or written, with the
others done; 2 an option that can't be, with nothing done; 128 + N ended by
signal N.)";

}  // namespace

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
    CLI::App program("Reads model files; shows, draws, plays and picks what is in them.",
                     "corvanta");
    program.formatter(std::make_shared<NHelpFormatter>());
    program.set_help_flag("-h,--help", "Print this help");
    program.set_version_flag("--version", "corvanta " CORVANTA_VERSION, "Print the version");
    program.footer(kFooter);
    program.require_subcommand(1);
    for (NAddCommand* const add : kCommands) add(program, status);
    for (CLI::App* const command : program.get_subcommands({})) command->group("Commands");
    try {
      program.parse(argc, argv);
    } catch (CLI::ParseError const& error) {
      // Asking for help is no error.
      if (error.get_exit_code() != 0) {
        PrintFault(program, {argv + 1, argv + argc}, error);
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
