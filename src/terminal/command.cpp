#include "terminal/command.h"

#include <CLI/App.hpp>

namespace ostrel {

void CommandGroup::Declare(CLI::App& own) {
  own.require_subcommand(1);
}

}  // namespace ostrel
