#pragma once

#include <CLI/App.hpp>
#include <string>

namespace corvanta::app {

/// Writes the help of the program and of its commands: how it is called, what it does, its options
/// in a column of their own, wrapped to 80 characters. What an option takes is its `option_text`.
class NHelpFormatter : public CLI::Formatter {
 public:
  std::string make_help(CLI::App const* app, std::string name,
                        CLI::AppFormatMode mode) const override;
  std::string make_usage(CLI::App const* app, std::string name) const override;
  std::string make_group(std::string group, bool isPositional,
                         std::vector<CLI::Option const*> options) const override;
  std::string make_option(CLI::Option const* option, bool isPositional) const override;
  std::string make_subcommand(CLI::App const* command) const override;
};

}  // namespace corvanta::app
