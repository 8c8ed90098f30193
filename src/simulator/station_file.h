#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/station.h"

namespace ostrel::simulator {

/// The stations of a bus as a text file names them: a station a line, "model;firmware;name;serial".
/// Holds the texts to which their data refer.
class StationFile {
 public:
  StationFile() = default;
  StationFile(const StationFile&) = delete;
  StationFile& operator=(const StationFile&) = delete;

  /// Returns why not, with the file and the line, or nothing. To be called once.
  std::string Load(const std::string& path);
  /// The same of the file's text; the reason begins with "line N: ".
  std::string Read(std::string_view text);

  /// In bus order, the physically connected one first; at least one once read.
  std::span<const StationData> Stations() const { return stations_; }

 private:
  std::string Take(std::string_view line);
  std::string_view Keep(std::string text);

  std::deque<std::string> texts_;
  std::vector<StationData> stations_;
};

}  // namespace ostrel::simulator
