#pragma once

#include <functional>
#include <string>
#include <utility>

#include "base/dialogs.h"
#include "wire/automation.h"

namespace ostrel {

/// Shows the connection list: gets the name that did not open and why, gives the chosen name, or an
/// empty text when the user cancels.
using ConnectionChooser = std::function<std::string(const std::string& name, const Message& why)>;

/// Adds the connection chooser, "<server>.Chooser", to the objects that another factory creates:
/// the list is shown by the program itself, in its window or in the terminal.
class FactoryWithChooser : public AutomationFactory {
 public:
  FactoryWithChooser(AutomationFactory& factory, ConnectionChooser choose)
      : factory_(factory), choose_(std::move(choose)) {}
  Created Create(std::string_view className) override;

 private:
  AutomationFactory& factory_;
  ConnectionChooser choose_;
};

}  // namespace ostrel
