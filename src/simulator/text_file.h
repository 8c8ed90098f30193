#pragma once

#include <cstddef>
#include <string>

namespace ostrel::simulator {

/// Reads a whole file of at most so many bytes. Returns why not, or nothing.
std::string ReadTextFile(const std::string& path, std::size_t limit, std::string& text);

}  // namespace ostrel::simulator
