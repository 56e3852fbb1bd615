#include "app/help/faults.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <numeric>

#include "app/output/text.h"

namespace corvanta::app {

namespace {

/// How many letters have to be put in, left out or changed (Levenshtein 1966).
std::size_t GetDistance(std::string const& a, std::string const& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i != a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t k = 0; k != b.size(); ++k) {
      std::size_t const changed = diagonal + (a[i] != b[k]);
      diagonal = row[k + 1];
      row[k + 1] = std::min({changed, row[k] + 1, row[k + 1] + 1});
    }
  }
  return row.back();
}

std::string Suggest(std::string const& word, std::vector<std::string> const& names) {
  std::string const nearest = FindNearest(word, names);
  return nearest.empty() ? "" : "; did you mean " + nearest + "?";
}

std::vector<std::string> GetCommands(CLI::App const& program) {
  std::vector<std::string> names;
  for (CLI::App const* const command : program.get_subcommands({})) {
    names.push_back(command->get_name());
  }
  return names;
}

std::vector<std::string> GetOptions(CLI::App const& command) {
  std::vector<std::string> names;
  for (CLI::Option const* const option : command.get_options()) {
    for (std::string const& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

/// Why `command` can't be run.
std::string FindFault(CLI::App const& command, std::vector<std::string> const& arguments,
                      CLI::ParseError const& error) {
  std::string const more = "; corvanta help " + command.get_name() + " tells more";
  auto const names = GetOptions(command);
  for (std::string const& argument : arguments) {
    std::string const name = argument.substr(0, argument.find('='));
    bool const isUnknown = name.size() > 2 && name.rfind("--", 0) == 0 &&
                           std::find(names.begin(), names.end(), name) == names.end();
    if (!isUnknown) continue;
    std::string const meant = Suggest(name, names);
    return command.get_name() + " has no option " + name + (meant.empty() ? more : meant);
  }
  return error.what() + more;
}

}  // namespace

std::string FindNearest(std::string const& word, std::vector<std::string> const& names) {
  std::string nearest;
  std::size_t least = word.size() / 3 + 2;
  for (std::string const& name : names) {
    bool const isBegun = word.size() > 1 && name.rfind(word, 0) == 0;
    std::size_t const distance = isBegun ? 0 : GetDistance(word, name);
    if (distance >= least) continue;
    least = distance;
    nearest = name;
  }
  return nearest;
}

void PrintFault(CLI::App const& program, std::vector<std::string> const& arguments,
                CLI::ParseError const& error) {
  auto const chosen = program.get_subcommands();
  if (!chosen.empty()) {
    PrintError("options", FindFault(*chosen.front(), arguments, error));
    return;
  }
  PrintError("options", arguments.empty() ? "a command is missing"
                                          : "there is no command " + Quoted(arguments.front()) +
                                                Suggest(arguments.front(), GetCommands(program)));
  std::cerr << '\n' << program.help() << std::flush;
}

}  // namespace corvanta::app
