#pragma once

#include <filesystem>

#include "base/settings_store.h"

namespace ostrel {

// Files of the program in the folders of its user.

/// The service log, below the documents.
std::filesystem::path ServiceLogFile(const std::filesystem::path& documents);

/// Where the console puts a script aside, below the documents.
std::filesystem::path UnsavedScriptFile(const std::filesystem::path& documents);

/// The log of the console, as the settings have it; else in the user's profile.
std::filesystem::path ConsoleLogFile(const SettingsStore& settings,
                                     const std::filesystem::path& profile);

/// Deletes the temporary parameter files below the documents. Links are left alone; what cannot be
/// deleted stays.
void DeleteParameterFiles(const std::filesystem::path& documents);

}  // namespace ostrel
