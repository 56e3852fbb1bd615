#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "app/commands/commands.h"

namespace corvanta::app {

void AddHelp(CLI::App& program, int& status) {
  auto const name = std::make_shared<std::string>();
  CLI::App* const command =
      program.add_subcommand("help", "Print what a command does and its options.");
  command->add_option("COMMAND", *name, "Command; without it, all are listed");
  command->callback([&program, name, &status] {
    status = NS_DONE;
    if (name->empty()) {
      // Help of the program itself: of what is chosen, it would be that of this command.
      std::cout << program.get_formatter()->make_help(&program, program.get_name(),
                                                      CLI::AppFormatMode::Normal);
      return;
    }
    auto const named =
        program.get_subcommands([&](CLI::App* other) { return other->get_name() == *name; });
    if (named.empty()) {
      throw CLI::ValidationError("COMMAND", "there is no command " + Quoted(*name));
    }
    std::cout << named.front()->help(program.get_name());
  });
}

}  // namespace corvanta::app
