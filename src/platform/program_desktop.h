#pragma once

#include "base/desktop.h"

namespace ostrel {

/// The computer on which this process runs. A QCoreApplication must exist.
class ProgramDesktop : public Desktop {
 public:
  std::filesystem::path ProgramFolder() const override;
  std::filesystem::path DocumentsFolder() const override;
  std::filesystem::path ProfileFolder() const override;
  std::string Locale() const override;
  bool RaiseWindow(const std::string& title) override;
  bool StartProgram(const std::filesystem::path& program,
                    const std::vector<std::string>& arguments) override;
};

}  // namespace ostrel
