#pragma once

#include <optional>
#include <string>

#include "wire/connections.h"

namespace ostrel {

/// Why a serial device cannot be used: an error code (10013, 10027, 10033) and the reason.
struct SerialFault {
  int code = 0;
  std::string reason;
};

/// Who may open a device.
struct DeviceAccess {
  std::string owner;
  std::string group;
  bool groupMayUse = false;  // joining the group would help
};

/// What stands where links lead in the end; empty with the error number in `error`.
std::string RealPath(const std::string& path, int& error);

/// The name of the link in the folder that leads to this real path; empty when there is none.
std::string AdapterOf(const std::string& realPath, const std::string& folder);

/// A descriptor of the device that locks it against other programs, -1 with what speaks against it
/// in `fault`. The caller closes it.
int ClaimDevice(const std::string& path, SerialFault& fault);

/// What a failed opening of a device means.
SerialFault OpenFault(const std::string& path, int error);
/// The reason for a refusal, with the command that mends it where one does.
std::string NoPermission(const std::string& path, const DeviceAccess& access,
                         const std::string& user);

/// What the driver made otherwise than the connection has it; nothing when all is set as it should.
std::optional<std::string> WrongSetting(int descriptor, const Connection& connection);

}  // namespace ostrel
