#pragma once

#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>

#include "base/messages.h"

namespace ostrel {

/// What the main window shows of the selected station, and the answers that the pages get from it.
/// They go by these texts alone, not by the device identity.
class Selection {
 public:
  /// `kennName` is address and name of the station, `typ` the type string that the device gave.
  void Set(std::string kennName, std::string typ, std::string firmware, std::string serial);

  /// No station is shown any more; the check stays.
  void Clear();
  /// What may refuse commands that change something on the device, and says so.
  void SetCheck(std::function<bool()> check) { check_ = std::move(check); }

  const std::string& KennName() const { return kennName_; }
  const std::string& Typ() const { return typ_; }
  const std::string& Serial() const { return serial_; }

  /// Address and name, trimmed; nothing when no station is shown.
  std::optional<std::string> GetKennName() const;
  /// The address of the station, with its ":".
  std::optional<std::string> GetKenn() const;
  /// The address for what changes something on the device: nothing also when the check refuses.
  std::optional<std::string> GetKennSel() const;
  /// The model number of the type string.
  int GetTypeCode() const;
  /// The address, and the type string in `typ`.
  std::optional<std::string> GetKennTyp(std::string& typ) const;
  /// The address, when the model is one of 0, 4, 11, 12; `show` gets the message of a failure.
  std::optional<std::string> GetKennRegler(const Messages* show = nullptr) const;
  /// The address, when the model is one of the regulators 0, 1, 4, 11, 12; `show` as above.
  std::optional<std::string> GetKennReglerFam(const Messages* show = nullptr) const;
  /// The firmware version of the station; nothing when no station is shown.
  std::optional<std::string> GetFW() const;

 private:
  std::optional<std::string> KennOf(std::initializer_list<int> models, const Messages* show,
                                    int messageId) const;

  std::function<bool()> check_;
  std::string kennName_;
  std::string typ_;
  std::string firmware_;
  std::string serial_;
};

}  // namespace ostrel
