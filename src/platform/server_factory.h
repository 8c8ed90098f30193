#pragma once

#include <functional>
#include <memory>
#include <string>

#include "link/automation.h"
#include "platform/server_proxy.h"

namespace ostrel {

/// Shows the connection list: gets the name that did not open and the reason, gives the chosen
/// name, or an empty text when the user cancels.
using ConnectionChooser =
    std::function<std::string(const std::string& name, const std::string& reason)>;

/// Creates the communication server's objects.
class ServerFactory : public AutomationFactory {
 public:
  explicit ServerFactory(ConnectionChooser choose = {}) : choose_(std::move(choose)) {}
  Created Create(std::string_view className) override;

  /// The server if one runs; it is not started for this.
  static std::unique_ptr<ServerProxy> Running();

 private:
  ConnectionChooser choose_;
};

}  // namespace ostrel
