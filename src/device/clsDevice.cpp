#include "device/clsDevice.h"

#include <algorithm>
#include <array>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "wire/answers.h"

namespace ostrel {

namespace {

constexpr std::array<std::string_view, 14> kNames = {"KT-X",   "LX-X",  "KT-XN",  "KT-XF", "KT-XB",
                                                     "KT-XFB", "QM-X",  "QM-XB",  "NV-X",  "JS-X",
                                                     "WB-X",   "KT-XW", "KT-XWB", "KT-XWS"};

struct Rule {
  std::string_view prefix;
  int model;
};

/// In the order in which they are tried. The spelling with "=" has no longer form of its own.
constexpr Rule kRules[] = {
    {"kt-xb", 4},  {"kt=xb", 4},  {"kt-xfb", 5}, {"kt-xf", 3}, {"kt=xf", 3}, {"kt-xwb", 12},
    {"kt-xw", 11}, {"kt=xw", 11}, {"qm-xb", 7},  {"kt-x", 0},  {"kt=x", 0},  {"lx-x", 1},
    {"lx=x", 1},   {"qm-x", 6},   {"nv-x", 8},   {"js-x", 9},  {"wb-x", 10}, {"hz-x", 13},
};

int QorModel(std::string_view type) {
  const std::string_view kind = type.substr(std::min<std::size_t>(4, type.size()), 5);
  for (const std::string_view known : {"u1601", "u1602", "u1603"}) {
    if (kind == known) return 80;
  }
  for (const std::string_view known : {"u1600", "u1615", "u1610"}) {
    if (kind == known) return 90;
  }
  return kUnknownModel;
}

std::string NormalisedFirmware(const std::string& firmware) {
  const std::size_t point = firmware.find('.');
  if (point == std::string::npos) return {};
  return ReadNumber(firmware) > 2.2 ? "2." + firmware.substr(point + 1) : firmware;
}

/// What is no number is never reached.
double MinimumAsNumber(std::string_view minimum) {
  const std::string_view text = Trim(minimum);
  const bool digits = text.find_first_not_of("0123456789.") == std::string_view::npos;
  const bool number = digits && text.find_first_of("0123456789") != std::string_view::npos &&
                      std::count(text.begin(), text.end(), '.') <= 1;
  return number ? ReadNumber(text) : 1e7;
}

/// Below 0, 0 or above 0: dotted versions by their numbers, a missing field is 0.
int CompareFields(std::string left, std::string right) {
  while (!left.empty() || !right.empty()) {
    const double difference = ReadNumber(NextToken(left, '.')) - ReadNumber(NextToken(right, '.'));
    if (difference != 0) return difference < 0 ? -1 : 1;
  }
  return 0;
}

}  // namespace

std::string ModelName(int model) {
  if (model < 0 || model >= static_cast<int>(kNames.size())) return "???";
  return std::string(kNames[static_cast<std::size_t>(model)]);
}

std::string_view AutoReadCommand(int model) {
  switch (model) {
    case 0:
    case 4:
      return "regauto#";
    case 3:
    case 5:
      return "espauto#";
    default:
      return {};
  }
}

int ModelFromType(std::string_view typeString) {
  const std::string type = LowerAscii(Trim(typeString));
  for (const Rule& rule : kRules) {
    if (type.starts_with(rule.prefix)) return rule.model;
  }
  return type.starts_with("qor") ? QorModel(type) : kUnknownModel;
}

std::string SerialDigitsCore(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789";
  text = text.substr(0, text.find('-'));
  const std::size_t first = text.find_first_of(kDigits);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_of(kDigits) - first + 1));
}

bool clsDevice::InFamily(std::initializer_list<int> models, const Messages* show,
                         int messageId) const {
  const bool inside = valid_ && std::find(models.begin(), models.end(), model_) != models.end();
  if (!inside && show != nullptr) show->Warn(messageId);
  return inside;
}

bool clsDevice::IsFamRegler(const Messages* show) const {
  return InFamily({0, 4}, show, text::kOnlyRegler);
}

bool clsDevice::IsFamReglerLx(const Messages* show) const {
  return InFamily({0, 1, 4}, show, text::kOnlyReglerLx);
}

bool clsDevice::IsFamXw(const Messages* show) const {
  return InFamily({11, 12}, show, text::kOnlyXw);
}

bool clsDevice::IsFamTormex(const Messages* show) const {
  // The same message as the narrower family's, on purpose.
  return InFamily({0, 1, 4, 11, 12}, show, text::kOnlyRegler);
}

bool clsDevice::IsFamXf() const {
  return InFamily({3, 5}, nullptr, 0);
}

bool clsDevice::IsFamQm() const {
  return InFamily({6, 7}, nullptr, 0);
}

bool clsDevice::IsFamNv() const {
  return InFamily({8, 13}, nullptr, 0);
}

bool clsDevice::IsFamJs() const {
  return InFamily({9}, nullptr, 0);
}

bool clsDevice::IsFamTormexMsg4Other(const Messages& show) const {
  if (!valid_) {
    show.Warn(text::kNoDeviceSelected);
    return false;
  }
  if (IsFamXf() || IsFamJs()) show.Warn(text::kUseSarvik);
  if (IsThisDev(6)) show.Warn(text::kUseDremlo);
  return IsFamTormex();
}

bool clsDevice::MatchTypeCode(std::string_view code) const {
  const std::string lower = LowerAscii(code);
  if (lower.empty() || lower == "cmd" || lower == "qol") return true;
  if (lower == "rgl") return IsFamRegler();
  if (lower == "lxl") return InFamily({1}, nullptr, 0);
  if (lower == "xwl" || lower == "xbl") return IsFamXw();
  if (lower == "xfl") return IsFamXf();
  if (lower == "qml") return IsFamQm();
  if (lower == "wbl") return InFamily({10}, nullptr, 0);
  return lower == "jsl" && IsFamJs();
}

bool clsDevice::FWMinimumCheck(std::string_view minimum, const Messages* show) const {
  const std::string firmware = NormalisedFirmware(firmware_);
  const bool enough = IsFamTormex() ? ReadNumber(firmware) >= MinimumAsNumber(minimum)
                                    : CompareFields(firmware, std::string(minimum)) >= 0;
  if (!enough && show != nullptr) {
    show->Warn(text::kFirmwareTooOld, "\nMinimum: " + std::string(minimum));
  }
  return enough;
}

void clsDevice::SetIdentity(std::string_view station, int model) {
  valid_ = true;
  model_ = model;
  address_ = AddressPart(station);
}

}  // namespace ostrel
