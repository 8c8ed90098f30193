#include "base/settings_path.h"

#include "base/text.h"

namespace ostrel {

std::string SettingsPath(std::string_view key, std::string_view name) {
  std::string path;
  for (std::string_view part : {key, name}) {
    if (!path.empty()) path += '\\';
    for (const char letter : part) {
      if (letter != '\\' || (!path.empty() && path.back() != '\\')) path += letter;
    }
    while (!path.empty() && path.back() == '\\') path.pop_back();
  }
  return path;
}

std::string ProgramKey(std::string_view application, std::string_view section) {
  return SettingsPath(SettingsPath(R"(Software\Program Settings)", application), section);
}

std::string SubKeyOf(std::string_view key, std::string_view path) {
  const std::string prefix = SettingsPath(key, "") + '\\';
  if (!SameText(path.substr(0, prefix.size()), prefix)) return {};
  const std::string_view rest = path.substr(prefix.size());
  const std::size_t end = rest.find('\\');
  return end == std::string_view::npos ? std::string() : std::string(rest.substr(0, end));
}

}  // namespace ostrel
