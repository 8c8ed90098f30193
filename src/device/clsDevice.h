#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "base/messages.h"

namespace ostrel {

/// Model number of a device whose type answer fits no rule.
inline constexpr int kUnknownModel = 999;

/// The name shown for a model number; "???" for 80, 90, 999 and every other number.
std::string ModelName(int model);

/// The model number of a type string, such as "KT-XB" or "lx=x".
int ModelFromType(std::string_view typeString);

/// The line, without an address, that reads the automatic or manual state of a model; empty for
/// models that have none.
std::string_view AutoReadCommand(int model);

/// The digits of a serial number: what stands before the first "-", from its first digit to its
/// last; empty where there is none.
std::string SerialDigitsCore(std::string_view text);

/// The identity of the selected device. Every family test is false while none is selected; with
/// `show` a failed test shows its message.
class clsDevice {
 public:
  bool Valid() const { return valid_; }
  int Model() const { return model_; }
  /// The address text; "---" while no device is selected.
  std::string Address() const { return valid_ ? address_ : "---"; }
  std::string Firmware() const { return firmware_; }

  /// Selects a device: its model number or type string, and the address from an address answer.
  void SetIdentity(std::string_view station, int model);
  void SetIdentity(std::string_view station, std::string_view typeString) {
    SetIdentity(station, ModelFromType(typeString));
  }
  void SetFirmware(std::string firmware) { firmware_ = std::move(firmware); }

  bool IsFamRegler(const Messages* show = nullptr) const;
  bool IsFamReglerLx(const Messages* show = nullptr) const;
  bool IsFamXw(const Messages* show = nullptr) const;
  bool IsFamTormex(const Messages* show = nullptr) const;
  bool IsFamXf() const;
  bool IsFamQm() const;
  bool IsFamNv() const;
  bool IsFamJs() const;
  /// Compares the model number alone, also while no device is selected.
  bool IsThisDev(int model) const { return model_ == model; }
  /// IsFamTormex; else it is said that no device is selected, or which other program serves it.
  bool IsFamTormexMsg4Other(const Messages& show) const;
  /// Whether the device matches a three-letter type code, as scripts for it have it.
  bool MatchTypeCode(std::string_view code) const;
  /// Whether the firmware is at least this one: as numbers for the regulators, where versions from
  /// 2.2 on count as 2.x, field by field for all others.
  bool FWMinimumCheck(std::string_view minimum, const Messages* show = nullptr) const;

 private:
  bool InFamily(std::initializer_list<int> models, const Messages* show, int messageId) const;

  bool valid_ = false;
  int model_ = kUnknownModel;
  std::string address_ = "---";
  std::string firmware_ = "---";
};

}  // namespace ostrel
