#include "link/connection_chooser.h"

#include <memory>

namespace ostrel {

namespace {

/// A chooser as an object with one operation: Select(name, number, reason).
class Chooser : public AutomationObject {
 public:
  explicit Chooser(ConnectionChooser choose) : choose_(std::move(choose)) {}

  AutomationResult Call(std::string_view, const Values& arguments) override {
    if (arguments.size() < 3) return {choose_({}, {}), 0, {}};
    const auto at = [&arguments](std::size_t n) { return AutomationResult{arguments[n], 0, {}}; };
    const Message why{.number = at(1).Int(),
                      .text = at(2).Text(),
                      .title = {},
                      .style = MessageStyle::kExclamation};
    return {choose_(at(0).Text(), why), 0, {}};
  }
  AutomationResult Get(std::string_view, const Values&) override { return {}; }
  AutomationResult Put(std::string_view, const Values&, const Value&) override { return {}; }

 private:
  ConnectionChooser choose_;
};

}  // namespace

AutomationFactory::Created FactoryWithChooser::Create(std::string_view className) {
  if (!className.ends_with(".Chooser")) return factory_.Create(className);
  return {std::make_unique<Chooser>(choose_), {}};
}

}  // namespace ostrel
