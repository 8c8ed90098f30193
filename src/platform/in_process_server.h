#pragma once

#include "platform/registry_settings.h"
#include "server/comm_server.h"
#include "wire/automation.h"

namespace ostrel {

/// The communication server's object inside this process: the same members, no other programs on
/// its lines.
class InProcessServer : public AutomationObject {
 public:
  AutomationResult Call(std::string_view member, const Values& arguments) override;
  AutomationResult Get(std::string_view property, const Values& arguments) override;
  AutomationResult Put(std::string_view property, const Values& arguments,
                       const Value& value) override;

 private:
  RegistrySettings settings_;
  CommServer server_{settings_};
};

}  // namespace ostrel
