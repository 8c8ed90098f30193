#include "base/messages.h"

#include <algorithm>

#include "base/string_table.h"
#include "base/texts.h"

namespace ostrel {

namespace {

constexpr int kEnglish = 1;

/// A text of the table with the line ends that it spells out.
std::string Broken(std::string text) {
  for (std::size_t at = text.find("\\n"); at != std::string::npos; at = text.find("\\n", at)) {
    text.replace(at, 2, "\n");
  }
  return text;
}

std::span<const TableEntry> TableWith(int id) {
  if (id < Second(0)) return FirstBlock();
  if (id < Own(0)) return SecondBlock();
  if (id < Own(kSharedTexts)) return OwnBlock();
  static const auto kTables = FeatureTables();
  const auto hundred = [](int number) { return number / kTextsOfAFeature; };
  for (const auto table : kTables) {
    if (hundred(table.front().id) == hundred(id)) return table;
  }
  return {};
}

}  // namespace

std::string Messages::Text(int id, int factor) {
  const auto table = TableWith(id);
  const auto entry =
      std::lower_bound(table.begin(), table.end(), id,
                       [](const TableEntry& e, int wanted) { return e.id < wanted; });
  if (entry == table.end() || entry->id != id) return {};
  if (factor < 0 || factor >= static_cast<int>(entry->texts.size())) return {};
  return std::string(entry->texts[static_cast<std::size_t>(factor)]);
}

std::string Messages::Shown(int id) const {
  return Broken(Text(id));
}

std::string Messages::Caption(int id) const {
  const std::string text = Text(id);
  return Broken(text.empty() ? Text(id, kEnglish) : text);
}

std::string Messages::Filled(int id, std::string_view value) const {
  std::string text = Caption(id);
  if (const std::size_t place = text.find("%s"); place != std::string::npos) {
    text.replace(place, 2, value);
  }
  return text;
}

std::string Messages::Filled(int id, std::string_view first, std::string_view second) const {
  std::string text = Filled(id, first);
  // What was filled in may hold the mark itself.
  const std::size_t from = Caption(id).find("%s") + first.size();
  if (const std::size_t place = text.find("%s", from); place != std::string::npos) {
    text.replace(place, 2, second);
  }
  return text;
}

void Messages::Show(int id, std::string_view added) const {
  dialogs_.Show({.number = id, .text = Shown(id).append(added), .title = {}, .style = {}});
}

void Messages::Warn(int id, std::string_view added) const {
  dialogs_.Show({.number = id,
                 .text = Shown(id).append(added),
                 .title = {},
                 .style = MessageStyle::kExclamation});
}

std::string Messages::Shown(const Error& error) const {
  return Shown(error.code) + Below(error);
}

std::string Messages::Below(const Error& error) const {
  std::string below;
  if (error.unsent) below = "\n" + Caption(text::kNothingSent);
  return below.append(error.detail.empty() ? "" : "\n" + error.detail);
}

void Messages::Warn(const Error& error) const {
  if (error.told || error.code == 0) return;
  dialogs_.Show({.number = error.code,
                 .text = Shown(error),
                 .title = {},
                 .style = MessageStyle::kExclamation});
}

void Messages::WarnFilled(int id, std::string_view value) const {
  dialogs_.Show(
      {.number = id, .text = Filled(id, value), .title = {}, .style = MessageStyle::kExclamation});
}

void Messages::WarnFilled(const Error& error, std::string_view value) const {
  dialogs_.Show({.number = error.code,
                 .text = Filled(error.code, value) + Below(error),
                 .title = {},
                 .style = MessageStyle::kExclamation});
}

bool Messages::Ask(int id) const {
  return dialogs_.AskYesNo(Caption(id));
}

}  // namespace ostrel
