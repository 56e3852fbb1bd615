#pragma once

#include <CLI/App.hpp>
#include <string>
#include <vector>

namespace corvanta::app {

/// The one of `names` that was most likely meant by `word`; empty if none is near.
std::string FindNearest(std::string const& word, std::vector<std::string> const& names);

/// Prints in one line on stderr why the arguments can't be used and what was meant; the usage of
/// the program follows where there is no command.
void PrintFault(CLI::App const& program, std::vector<std::string> const& arguments,
                CLI::ParseError const& error);

}  // namespace corvanta::app
