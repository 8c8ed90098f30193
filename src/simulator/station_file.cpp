#include "simulator/station_file.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "simulator/bus.h"
#include "simulator/text_file.h"
#include "simulator/value.h"

namespace ostrel::simulator {

namespace {

constexpr std::size_t kMaxFile = 1024 * 1024;
constexpr std::size_t kMaxText = 40;
constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";

/// A type of device, and the one on the built-in bus that shows how it behaves.
struct Model {
  std::string_view name, like;
};
constexpr Model kModels[] = {
    {"KT-X", "KT-X"},    {"KT-XB", "KT-XB"}, {"LX-X", "LX-X"},     {"KT-XW", "KT-XW"},
    {"KT-XWB", "KT-XW"}, {"KT-XF", "KT-XF"}, {"KT-XFB", "KT-XFB"}, {"QM-X", "QM-X"},
    {"JS-X", "JS-X"},    {"NV-X", "NV-X"},
};

/// The newest built-in device of the model that is no newer than this firmware, or else its first.
StationData Pattern(std::string_view model, std::string_view firmware) {
  const StationData* pattern = nullptr;
  const StationData wanted{model, firmware, "", ""};
  for (const StationData& data : BuiltInStations()) {
    if (data.model != model) continue;
    if (!pattern || wanted.HasFirmware(data.firmware)) pattern = &data;
  }
  return pattern ? *pattern : StationData{};
}

bool IsFirmware(std::string_view text) {
  const bool dotted = text.find_first_not_of("0123456789.") == std::string_view::npos;
  return !text.empty() && text.size() <= kMaxText && dotted && !text.starts_with('.') &&
         !text.ends_with('.') && text.find("..") == std::string_view::npos;
}

bool IsControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || (byte >= 0x7f && byte < 0xa0);
}

bool IsTail(char c) {
  return (static_cast<unsigned char>(c) & 0xc0u) == 0x80u;
}

/// The length of the UTF-8 character at the beginning; 0 when there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xc2 ? 0
                             : first < 0xe0 ? 2
                             : first < 0xf0 ? 3
                             : first < 0xf5 ? 4
                                            : 0;
  if (length == 0 || text.size() < length) return 0;
  const std::string_view tail = text.substr(1, length - 1);
  return std::all_of(tail.begin(), tail.end(), IsTail) ? length : 0;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

/// From UTF-8 or Windows-1252, whichever it is. Nothing when a device could not say it.
std::optional<std::string> ToLatin1(std::string_view text) {
  std::string result;
  const bool utf8 = IsUtf8(text);
  while (!text.empty()) {
    const std::size_t length = utf8 ? CharacterLength(text) : 1;
    // Two bytes hold all of ISO 8859-1, and more.
    if (length > 2 || (length == 2 && text[0] != '\xc2' && text[0] != '\xc3')) return std::nullopt;
    const char high = text[0] == '\xc3' ? '\x40' : '\0';
    result += length == 1 ? text[0] : static_cast<char>(text[1] + high);
    text.remove_prefix(length);
  }
  if (std::any_of(result.begin(), result.end(), IsControl)) return std::nullopt;
  return result;
}

bool IsAscii(const std::string& text) {
  return std::none_of(text.begin(), text.end(), [](char c) { return (c & '\x80') != 0; });
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (std::size_t end = 0; end != std::string_view::npos;) {
    end = text.find(separator);
    parts.push_back(text.substr(0, end));
    text.remove_prefix(std::min(text.size(), parts.back().size() + 1));
  }
  return parts;
}

}  // namespace

std::string StationFile::Load(const std::string& path) {
  std::string text;
  std::string failure = ReadTextFile(path, kMaxFile, text);
  if (failure.empty()) failure = Read(text);
  return failure.empty() ? failure : path + ": " + failure;
}

std::string StationFile::Read(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  std::size_t number = 0;
  for (std::string_view line : Split(text, '\n')) {
    ++number;
    if (line.ends_with('\r')) line.remove_suffix(1);
    line = TrimBlanks(line);
    if (line.empty() || line.starts_with('#')) continue;
    const std::string failure = Take(line);
    if (!failure.empty()) return "line " + std::to_string(number) + ": " + failure;
  }
  return stations_.empty() ? "line " + std::to_string(number) + ": no station" : "";
}

std::string StationFile::Take(std::string_view line) {
  const std::vector<std::string_view> fields = Split(line, ';');
  if (fields.size() != 4) return "not of the form model;firmware;name;serial number";
  const std::string_view modelName = TrimBlanks(fields[0]), firmware = TrimBlanks(fields[1]);
  const auto model = std::find_if(std::begin(kModels), std::end(kModels),
                                  [&](const Model& known) { return known.name == modelName; });
  if (model == std::end(kModels)) return "unknown model";
  if (!IsFirmware(firmware)) return "firmware is not numbers with dots between";
  const auto name = ToLatin1(TrimBlanks(fields[2])), serial = ToLatin1(TrimBlanks(fields[3]));
  if (!name || !serial) return "a character that devices do not have";
  if (name->empty() || name->size() > kMaxText) return "name is empty or too long";
  if (serial->empty() || serial->size() > kMaxText || !IsAscii(*serial)) {
    return "serial number is empty, too long or not ASCII";
  }
  if (stations_.size() == kMaxStations) return "more than " + std::to_string(kMaxStations);
  StationData data = Pattern(model->like, firmware);
  data.model = model->name;
  data.firmware = Keep(std::string(firmware));
  data.name = Keep(*name);
  data.serialNumber = Keep(*serial);
  stations_.push_back(data);
  return {};
}

std::string_view StationFile::Keep(std::string text) {
  return texts_.emplace_back(std::move(text));
}

}  // namespace ostrel::simulator
