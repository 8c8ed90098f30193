#pragma once

#include "terminal/command.h"
#include "wire/automation.h"
#include "wire/server_control.h"

namespace ostrel {

// The commands that are no feature's.

CommandList MakeConnectionsCommands(AutomationFactory& automation);
CommandList MakeStationsCommands();
CommandList MakeIdentifyCommands();
CommandList MakeSendCommands();
CommandList MakeServerCommands(ServerControl& server);
CommandList MakeTextCommands();

}  // namespace ostrel
