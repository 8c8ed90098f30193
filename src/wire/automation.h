#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace ostrel {

/// What a member of an automation object takes and gives back. Texts are UTF-8.
using Value = std::variant<std::monostate, bool, int, std::string>;
using Values = std::vector<Value>;

/// Errors of an object are this base plus a code (10011..10045); other numbers are the system's
/// own.
inline constexpr int kObjectErrorBase = -2147221504;

/// The outcome of a call: error 0 and a value, or an error number with its description.
struct AutomationResult {
  Value value;
  int error = 0;
  std::string description;

  bool Ok() const { return error == 0; }
  /// The value as an integer; 0 when it is none.
  int Int() const;
  /// The value as a Boolean; false when it is none, numbers count as "not 0".
  bool Bool() const;
  /// The value as a text; empty when it is none.
  std::string Text() const;
};

/// An outcome that reports the object error with this code (10011..10045).
AutomationResult ObjectError(int code, std::string description);

/// An object whose members are called by name.
class AutomationObject {
 public:
  virtual ~AutomationObject() = default;
  virtual AutomationResult Call(std::string_view member, const Values& arguments) = 0;
  virtual AutomationResult Get(std::string_view property, const Values& arguments) = 0;
  virtual AutomationResult Put(std::string_view property, const Values& arguments,
                               const Value& value) = 0;
};

/// Creates objects by class name: "ZubServer.TESKComm", "OstrelTESK.TESKComm" and the choosers
/// "ZubServer.Chooser", "OstrelTESK.Chooser".
class AutomationFactory {
 public:
  struct Created {
    std::unique_ptr<AutomationObject> object;  // empty on failure
    std::string description;                   // why there is no object
  };
  virtual ~AutomationFactory() = default;
  virtual Created Create(std::string_view className) = 0;
};

}  // namespace ostrel
