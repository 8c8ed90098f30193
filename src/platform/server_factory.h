#pragma once

#include <memory>
#include <string>

#include "platform/server_proxy.h"
#include "wire/automation.h"

namespace ostrel {

/// Creates the communication server's object.
class ServerFactory : public AutomationFactory {
 public:
  Created Create(std::string_view className) override;

  /// The server if one runs; it is not started for this.
  static std::unique_ptr<ServerProxy> Running();
};

}  // namespace ostrel
