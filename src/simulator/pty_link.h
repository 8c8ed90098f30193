#pragma once

#include <string>

namespace ostrel::simulator {

/// The symbolic link by which hosts find a pseudo-terminal; it is removed with this object.
class PtyLink {
 public:
  explicit PtyLink(std::string path) : path_(std::move(path)) {}
  ~PtyLink();
  PtyLink(const PtyLink&) = delete;
  PtyLink& operator=(const PtyLink&) = delete;

  const std::string& Path() const { return path_; }
  /// From now on it leads to this pseudo-terminal. A link that leads nowhere, or to one that has
  /// ended, is replaced; anything else stays. Returns why not, or nothing.
  std::string LeadTo(const std::string& terminal);

 private:
  bool MayReplace(const std::string& terminal) const;

  std::string path_;
  std::string terminal_;
};

}  // namespace ostrel::simulator
