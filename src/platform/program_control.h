#pragma once

#include "wire/server_control.h"

namespace ostrel {

/// The server program of this user.
class ProgramControl : public ServerControl {
 public:
  std::optional<ServerInfo> Status() override;
  std::optional<bool> Stop() override;
};

}  // namespace ostrel
