#pragma once

#include <string.h>

#include <string>

namespace ostrel {

/// Takes a text out of the memory: it may hold a password.
inline void Wipe(std::string& text) {
  // Also what was there before; a short text stays behind where it was moved from.
  text.resize(text.capacity());
  explicit_bzero(text.data(), text.size());
  text.clear();
}

}  // namespace ostrel
