#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrel {

/// Reads a whole file. Returns the error number of the system: 0, or EFBIG for one of more than
/// `limit` bytes.
int ReadBytes(const std::string& path, std::size_t limit, std::string& bytes);

/// Gives a file, or the one to which a link leads, new contents: they are written beside it and
/// take its place whole, so that it is never without the old or the new ones. It keeps its
/// permissions. What a killed call left beside the file is removed. Returns the error number of the
/// system, 0 when it is done.
int ReplaceBytes(const std::string& path, std::string_view bytes);

/// Writes bytes behind the last one of a file, which is made where there is none. 0 or the error
/// number of the system.
int AppendBytes(const std::string& path, std::string_view bytes);

/// While it lives, others who take the lock of this folder wait, 5 s at most: for what is read,
/// changed and written back. It ends with the process, however that ends.
class FolderLock {
 public:
  explicit FolderLock(const std::string& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  int descriptor_;
};

/// The system's words for an error number, behind the name of the file.
std::string FileFault(const std::string& path, int error);

}  // namespace ostrel
