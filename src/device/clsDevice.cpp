#include "device/clsDevice.h"

#include <algorithm>
#include <array>

#include "app/text.h"
#include "link/answers.h"

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

}  // namespace

std::string ModelName(int model) {
  if (model < 0 || model >= static_cast<int>(kNames.size())) return "???";
  return std::string(kNames[static_cast<std::size_t>(model)]);
}

int ModelFromType(std::string_view typeString) {
  const std::string type = LowerAscii(Trim(typeString));
  for (const Rule& rule : kRules) {
    if (type.starts_with(rule.prefix)) return rule.model;
  }
  return type.starts_with("qor") ? QorModel(type) : kUnknownModel;
}

void clsDevice::SetIdentity(std::string_view station, std::string_view typeString) {
  valid_ = true;
  model_ = ModelFromType(typeString);
  address_ = AddressPart(station);
}

}  // namespace ostrel
