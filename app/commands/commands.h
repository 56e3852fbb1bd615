#pragma once

#include <CLI/App.hpp>
#include <string>

#include "app/output/status.h"
#include "app/output/text.h"

/// The commands of the program. Each is in a source of its own, which adds it to the program
/// with its options, and sets `status`, the program's exit status, when it has run.
namespace corvanta::app {

/// Runs a command whose options have no fault; tells of the fault otherwise.
template <class Run>
int RunUnless(std::string const& fault, Run const& run) {
  if (fault.empty()) return run();
  PrintError("options", fault);
  return NS_OPTIONS;
}

using NAddCommand = void(CLI::App& program, int& status);

NAddCommand AddDemo;
NAddCommand AddFormats;
NAddCommand AddHelp;
NAddCommand AddInfo;
NAddCommand AddMap;
NAddCommand AddPick;
NAddCommand AddPlay;
NAddCommand AddRender;
NAddCommand AddWatch;

inline constexpr NAddCommand* kCommands[] = {AddInfo,  AddRender, AddPlay,    AddPick, AddMap,
                                             AddWatch, AddDemo,   AddFormats, AddHelp};

}  // namespace corvanta::app
