#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel {

inline constexpr int kUserCount = 6;  // 0 is the guest
inline constexpr int kAdministrator = 1;
inline constexpr int kHighestGrant = 5;
inline constexpr int kMostMinutes = 65535;
/// The password that stands for none.
inline constexpr std::string_view kNoPassword = "0";

/// What a device tells of one of its users.
struct UserRecord {
  bool passwordSet = false;
  std::optional<int> grant;  // level 0..5, as read; absent = not known
  int timeout = 0;           // minutes until the logout, 0..65535, as read; 0 = never
};

/// The ports that are excepted from the protection. COM4 is not on every device.
struct PortExceptions {
  bool com1 = false;
  bool com2 = false;
  std::optional<bool> com4;
};

/// The lines to a device's user management. The address of the station goes before them.
namespace user_lines {

std::string WhoAmI();
std::string AllUsers();
std::string LogIn(int user, const std::string& password);
std::string LogOut();
/// With the password until now of this user or the administrator's.
std::string SetPassword(int user, const std::string& current, const std::string& fresh);
/// Grant and minutes of one user; both grants are known. Those of the guest stand behind the
/// administrator's own.
std::string SetUser(int user, const UserRecord& record, const UserRecord& administrator,
                    const std::string& password);
std::string Unprotect(const std::string& password);
/// Answered by a number; from 130 on there is a COM4.
std::string FeatureNumber();
std::string Exceptions();
std::string SetExceptions(const PortExceptions& ports, const std::string& password);

}  // namespace user_lines

/// The number behind "user" in the answer to WhoAmI; nothing when there is none.
std::optional<int> UserFromAnswer(const std::string& answer);
/// The six users as the device tells them, out of range or not; nothing when the answer is not
/// three whole numbers of each. Whoever is logged in lends the guest his grant.
std::optional<std::array<UserRecord, kUserCount>> UsersFromAnswer(std::string answer);
/// What stands behind each "="; nothing when one of them is neither 0 nor 1.
std::optional<std::vector<bool>> FlagsFromAnswer(std::string_view answer);

/// 0 when a password can stand in a line, else the message that says what it must not hold.
int PasswordProblem(std::string_view password);

}  // namespace ostrel
