#include "platform/in_process_server.h"

#include <QElapsedTimer>
#include <memory>
#include <optional>

#include "platform/event_pump.h"
#include "wire/codes.h"

namespace ostrel {

namespace {

constexpr int kClient = 1;
constexpr int kOpenMs = 10000;
constexpr int kPumpMs = 50;

}  // namespace

AutomationResult InProcessServer::Call(std::string_view member, const Values& arguments) {
  // Shared: a reply may come when nobody waits for it any more.
  const auto outcome = std::make_shared<std::optional<AutomationResult>>();
  server_.Call(kClient, member, arguments,
               [outcome](const AutomationResult& result) { *outcome = result; });
  QElapsedTimer passed;
  passed.start();
  while (!*outcome && passed.elapsed() < kOpenMs) PumpEvents(kPumpMs);
  return outcome->value_or(ObjectError(Code::kServerGone, "no answer in time"));
}

AutomationResult InProcessServer::Get(std::string_view property, const Values& arguments) {
  return Call(property, arguments);
}

AutomationResult InProcessServer::Put(std::string_view property, const Values& arguments,
                                      const Value& value) {
  Values all = arguments;
  all.push_back(value);
  return Call(property, all);
}

}  // namespace ostrel
