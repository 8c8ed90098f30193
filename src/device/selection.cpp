#include "device/selection.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "device/clsDevice.h"
#include "wire/answers.h"

namespace ostrel {

void Selection::Set(std::string kennName, std::string typ, std::string firmware,
                    std::string serial) {
  kennName_ = std::move(kennName);
  typ_ = std::move(typ);
  firmware_ = std::move(firmware);
  serial_ = std::move(serial);
}

void Selection::Clear() {
  Set({}, {}, {}, {});
}

std::optional<std::string> Selection::GetKennName() const {
  const std::string_view name = Trim(kennName_);
  if (name.empty()) return std::nullopt;
  return std::string(name);
}

std::optional<std::string> Selection::GetKenn() const {
  const std::optional<std::string> name = GetKennName();
  if (!name) return std::nullopt;
  return AddressPart(*name);
}

std::optional<std::string> Selection::GetKennSel() const {
  return check_ && !check_() ? std::nullopt : GetKenn();
}

int Selection::GetTypeCode() const {
  return ModelFromType(typ_);
}

std::optional<std::string> Selection::GetKennTyp(std::string& typ) const {
  typ = Trim(typ_);
  return GetKenn();
}

std::optional<std::string> Selection::KennOf(std::initializer_list<int> models,
                                             const Messages* show, int messageId) const {
  const std::optional<std::string> kenn = GetKenn();
  if (kenn && std::find(models.begin(), models.end(), GetTypeCode()) != models.end()) return kenn;
  if (show != nullptr) show->Warn(messageId);
  return std::nullopt;
}

std::optional<std::string> Selection::GetKennRegler(const Messages* show) const {
  return KennOf({0, 4, 11, 12}, show, text::kOnlyRegler);
}

std::optional<std::string> Selection::GetKennReglerFam(const Messages* show) const {
  return KennOf({0, 1, 4, 11, 12}, show, text::kOnlyReglerLx);
}

std::optional<std::string> Selection::GetFW() const {
  if (!GetKennName()) return std::nullopt;
  return firmware_;
}

}  // namespace ostrel
