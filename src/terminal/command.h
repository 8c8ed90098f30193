#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/error.h"
#include "device/desk.h"
#include "terminal/terminal.h"

namespace CLI {
class App;
}

namespace ostrel {

/// Something that one can type: its name and help, its options, and what it does. What was given
/// stands in its members when it runs; each runs once at most.
class Command {
 public:
  /// "statistics", or "statistics clear" for one below another, which stands before it in the list.
  Command(std::string name, std::string help) : name_(std::move(name)), help_(std::move(help)) {}
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  const std::string& Name() const { return name_; }
  const std::string& Help() const { return help_; }

  /// Adds the options; `own` is the parser's subcommand with this name.
  virtual void Declare(CLI::App& /*own*/) {}
  /// Prints what came of it, shows what went wrong.
  virtual Ending Run(const Desk& desk, Terminal& terminal) = 0;

 private:
  std::string name_;
  std::string help_;
};

/// What a folder has of them.
using CommandList = std::vector<std::unique_ptr<Command>>;

/// A name that needs one of the commands below it.
class CommandGroup : public Command {
 public:
  using Command::Command;
  void Declare(CLI::App& own) override;
  Ending Run(const Desk&, Terminal&) override { return Ending::kFailed; }
};

/// Makes a list of commands.
template <typename... Commands>
CommandList ListOf(std::unique_ptr<Commands>... commands) {
  CommandList list;
  (list.push_back(std::move(commands)), ...);
  return list;
}

}  // namespace ostrel
