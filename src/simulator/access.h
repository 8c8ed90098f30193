#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/program.h"
#include "simulator/variables.h"
#include "simulator/words.h"

namespace ostrel::simulator {

/// The password that stands for none.
inline constexpr std::string_view kNoPassword = "0";

/// One of the users 0 (guest) to 5; user 1 is the administrator.
struct UserData {
  std::string_view password = kNoPassword;
  int grant = 5;           ///< 0 to 5
  int timeoutMinutes = 0;  ///< until the logout without a line; 0 = never
};

/// The users that a device begins with.
struct AccessData {
  std::string_view refusal = "access denied";
  std::array<UserData, 6> users = {UserData{kNoPassword, 1, 0}};
};

/// Who may do what at a device. Without a password of the administrator everybody may do all.
/// What is wrong is thrown as a Fault, which never names a password.
class Access {
 public:
  static constexpr int kLastUser = 5;
  static constexpr int kAdministrator = 1;
  static constexpr int kLastPort = 4;
  static constexpr int kHighestGrant = 5;

  /// Local = the lines come over the device's own interface, otherwise over the bus.
  Access(const AccessData& data, bool local);

  /// Logs out whoever has sent no line for his minutes. Simulated time.
  void Advance(std::int64_t milliseconds);
  /// A line has come for the device.
  void NoteLine() { lastLineMs_ = nowMs_; }

  /// The grant level in force, 0 to 5.
  int Grant() const;
  bool Allows(Right right) const;
  const std::string& Refusal() const { return refusal_; }

  int CurrentUser() const { return current_; }
  void LogIn(int user, std::string_view password);
  void LogOut() { current_ = 0; }

  bool HasPassword(int user) const { return users_[user].password != kNoPassword; }
  /// Of user 0, who is whoever is here now: the grant in force.
  int GrantOf(int user) const { return user == 0 ? Grant() : users_[user].grant; }
  int MinutesOf(int user) const { return users_[user].timeoutMinutes; }

  /// With the old password of this user or the administrator's.
  void SetPassword(int user, std::string_view old, std::string_view fresh);
  void SetUser(int user, std::string_view administrators, int minutes, int grant);

  /// An interface (1 to kLastPort) that the passwords do not protect.
  bool IsExcepted(int port) const { return excepted_[port]; }
  void SetExcepted(int port, std::string_view administrators, bool excepted);

 private:
  struct User {
    std::string password;
    int grant = 0;
    int timeoutMinutes = 0;
  };

  void CheckPassword(bool right);
  void CheckAdministrator(std::string_view password);

  std::string refusal_;
  std::array<User, kLastUser + 1> users_;
  std::array<bool, kLastPort + 1> excepted_{};
  bool local_;
  int current_ = 0;
  int wrongPasswords_ = 0;
  std::int64_t nowMs_ = 0;
  std::int64_t lastLineMs_ = 0;
  std::int64_t blockedUntilMs_ = 0;
};

/// The right without which a line is refused as a whole, whatever branch it would take.
Right NeededRight(const Program& program);

/// login, logout, whoami
WordTable AccessWords();
/// The users, the exceptions, and whether lines may go to all stations.
VariableTable AccessVariables();

}  // namespace ostrel::simulator
