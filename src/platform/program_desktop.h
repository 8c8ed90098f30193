#pragma once

#include "app/desktop.h"

namespace ostrel {

/// The computer on which this process runs. A QCoreApplication must exist.
class ProgramDesktop : public Desktop {
 public:
  std::filesystem::path ProgramFolder() const override;
};

}  // namespace ostrel
