#include "wire/automation.h"

namespace ostrel {

int AutomationResult::Int() const {
  if (const int* number = std::get_if<int>(&value)) return *number;
  return Bool() ? 1 : 0;
}

bool AutomationResult::Bool() const {
  if (const bool* flag = std::get_if<bool>(&value)) return *flag;
  const int* number = std::get_if<int>(&value);
  return number != nullptr && *number != 0;
}

std::string AutomationResult::Text() const {
  const std::string* text = std::get_if<std::string>(&value);
  return text != nullptr ? *text : std::string();
}

AutomationResult ObjectError(int code, std::string description) {
  return {{}, kObjectErrorBase + code, std::move(description)};
}

}  // namespace ostrel
