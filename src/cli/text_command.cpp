#include <CLI/CLI.hpp>

#include "cli/own_commands.h"
#include "terminal/json.h"

namespace ostrel {

namespace {

class TextCommand : public Command {
 public:
  TextCommand() : Command("text", "Print the message with this German id") {}

  void Declare(CLI::App& own) override { own.add_option("id", id_, "Its number")->required(); }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    const std::string text = desk.texts.Text(id_);
    if (terminal.Json()) {
      terminal.PrintJson(JsonObject().Add("id", id_).Add("text", text).Text());
    } else {
      terminal.Out() << text << '\n';
    }
    return Ending::kDone;
  }

 private:
  int id_ = 0;
};

}  // namespace

CommandList MakeTextCommands() {
  return ListOf(std::make_unique<TextCommand>());
}

}  // namespace ostrel
