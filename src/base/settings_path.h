#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// Key and value name as one path, without doubled or trailing backslashes.
std::string SettingsPath(std::string_view key, std::string_view name);

/// The key below which the settings of one program stand.
std::string ProgramKey(std::string_view application, std::string_view section);

/// The name of the key directly below `key` on the way to `path`; empty when `path` is not below it
/// or is a value of `key` itself. Case is ignored.
std::string SubKeyOf(std::string_view key, std::string_view path);

}  // namespace ostrel
