#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// Model number of a device whose type answer fits no rule.
inline constexpr int kUnknownModel = 999;

/// The name shown for a model number; "???" for 80, 90, 999 and every other number.
std::string ModelName(int model);

/// The model number of a type string, such as "KT-XB" or "lx=x".
int ModelFromType(std::string_view typeString);

/// The identity of the selected device.
class clsDevice {
 public:
  bool Valid() const { return valid_; }
  int Model() const { return model_; }
  /// The address text; "---" while no device is selected.
  std::string Address() const { return valid_ ? address_ : "---"; }
  std::string Firmware() const { return firmware_; }

  /// Selects a device: the model from its type string, the address from an address answer.
  void SetIdentity(std::string_view station, std::string_view typeString);
  void SetFirmware(std::string firmware) { firmware_ = std::move(firmware); }

 private:
  bool valid_ = false;
  int model_ = kUnknownModel;
  std::string address_ = "---";
  std::string firmware_ = "---";
};

}  // namespace ostrel
