#pragma once

#include <CLI/App.hpp>
#include <string>

#include "app/output/text.h"

/// The commands of the program. Each is in a source of its own, which adds it to the program
/// with its options, and sets `status`, the program's exit status, when it has run.
namespace corvanta::app {

/// Exit statuses.
enum NStatus : int {
  NS_DONE = 0,
  NS_FILE = 1,     ///< a file couldn't be used, or the output not be written
  NS_OPTIONS = 2,  ///< an option that can't be
};

/// Runs a command whose options have no fault; tells of the fault otherwise.
template <class Run>
int RunUnless(std::string const& fault, Run const& run) {
  if (fault.empty()) return run();
  PrintError("options", fault);
  return NS_OPTIONS;
}

using NAddCommand = void(CLI::App& program, int& status);

NAddCommand AddDemo;
NAddCommand AddInfo;
NAddCommand AddMap;
NAddCommand AddPick;
NAddCommand AddPlay;
NAddCommand AddRender;
NAddCommand AddWatch;

inline constexpr NAddCommand* kCommands[] = {AddDemo, AddInfo, AddWatch, AddPick,
                                             AddMap,  AddPlay, AddRender};

}  // namespace corvanta::app
