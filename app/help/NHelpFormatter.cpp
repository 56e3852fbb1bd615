#include "app/help/NHelpFormatter.h"

#include <cstddef>
#include <sstream>
#include <utility>

namespace corvanta::app {

namespace {

constexpr std::size_t kHelpColumn = 26;
constexpr std::size_t kHelpWidth = 80;

/// `text` in lines that begin in the column `indent`, after `head`.
std::string Wrap(std::string head, std::size_t indent, std::string const& text) {
  std::string lines;
  if (head.size() + 1 > indent) {
    lines = head + '\n';
    head.clear();
  }
  std::string line = head + std::string(indent - head.size(), ' ');
  bool isFirst = true;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    if (!isFirst && line.size() + 1 + word.size() > kHelpWidth) {
      lines += line + '\n';
      line = std::string(indent, ' ');
      isFirst = true;
    }
    if (!isFirst) line += ' ';
    line += word;
    isFirst = false;
  }
  return lines + line + '\n';
}

std::string GetHead(CLI::Option const& option) {
  std::string head = "  ";
  for (std::string const& name : option.get_snames()) head += '-' + name + ", ";
  for (std::string const& name : option.get_lnames()) head += "--" + name + ", ";
  head.erase(head.size() - 2);
  if (!option.get_option_text().empty()) head += ' ' + option.get_option_text();
  return head;
}

}  // namespace

std::string NHelpFormatter::make_help(CLI::App const* app, std::string name,
                                      CLI::AppFormatMode mode) const {
  std::string const head = make_usage(app, std::move(name)) + Wrap("", 0, app->get_description());
  std::string text = make_subcommands(app, mode) + make_groups(app, mode);
  // A blank line between groups comes from the base, too.
  for (auto at = text.find("\n\n\n"); at != std::string::npos; at = text.find("\n\n\n")) {
    text.erase(at, 1);
  }
  return head + text + make_footer(app);
}

std::string NHelpFormatter::make_usage(CLI::App const* app, std::string name) const {
  std::string usage = std::move(name);
  bool const hasCommands = !app->get_subcommands({}).empty();
  for (CLI::Option const* const option : app->get_options()) {
    if (option->get_positional()) usage += ' ' + make_option_usage(option);
    bool const isNeeded = option->nonpositional() && option->get_required();
    if (isNeeded) usage += ' ' + GetHead(*option).substr(2);
  }
  return Wrap("usage:", 7,
              usage + (hasCommands ? " COMMAND [FILE...] [OPTION...]" : " [OPTION...]"));
}

std::string NHelpFormatter::make_group(std::string group, bool isPositional,
                                       std::vector<CLI::Option const*> options) const {
  std::string text = '\n' + group + ":\n";
  for (CLI::Option const* const option : options) text += make_option(option, isPositional);
  return text;
}

std::string NHelpFormatter::make_option(CLI::Option const* option, bool) const {
  return Wrap(GetHead(*option), kHelpColumn, option->get_description());
}

std::string NHelpFormatter::make_subcommand(CLI::App const* command) const {
  return Wrap("  " + command->get_name(), 12, command->get_description());
}

}  // namespace corvanta::app
