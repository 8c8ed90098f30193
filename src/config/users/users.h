#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "config/users/user_lines.h"
#include "device/desk.h"

namespace ostrel {

/// What was read of a device's users; what is absent was not read.
struct UserState {
  std::optional<int> user;       // who is logged in
  std::optional<int> grant;      // the grant level in force
  std::optional<bool> protects;  // the administrator has a password
  std::array<std::optional<UserRecord>, kUserCount> users;
  std::optional<PortExceptions> ports;
};

/// The user management of the selected device. Passwords are asked for where they are needed and
/// stand in no message; every failure is shown.
class Users {
 public:
  explicit Users(const Desk& desk) : desk_(desk) {}

  const UserState& State() const { return state_; }
  /// "User 1 (Admin)"; the number itself where there is no such user.
  std::string UserName(int user) const;
  /// Another device was selected: nothing of it is known, and the password is forgotten.
  void DeviceChanged();

  /// Reads who is logged in, the grant, the users and the exceptions; what fails is known no more.
  /// Without an administrator's password State().protects is false, and the other users and the
  /// ports are not read.
  bool PWReadAll();
  /// Reads who is logged in and the grant alone.
  bool ReadLogin();
  /// Reads the grant of a station; nothing after a failure, which is shown.
  std::optional<int> GrantRead(const Reading& station);

  /// Asks for the user's password and logs him in at the selected device.
  Ending LogIn(int user);
  /// The same with a password that was asked for, at this station.
  bool LogIn(const Writing& station, int user, const std::string& password);
  /// False when the line was not sent.
  bool LogOut();

  /// Asks for what is needed, and for a confirmation before a password is removed.
  Ending SetPassword(int user);
  /// Grant level 0..5 and minutes 0..65535 until the logout, 0 = never.
  Ending SetUser(int user, int grant, int minutes);
  Ending Unprotect();
  /// A COM4 that is absent stays as it is.
  Ending SetPorts(PortExceptions ports);

 private:
  /// Shows only that the device is not reached. What it has is not known any more then.
  std::optional<std::string> Reach(const Reading& station, const std::string& line,
                                   bool settingPassword = false);
  /// The same, and what the device refuses.
  std::optional<std::string> Exchange(const Reading& station, const std::string& line,
                                      const std::vector<std::string>& passwords = {},
                                      bool settingPassword = false);
  bool ReadLogin(const Reading& device);
  /// To change the device, once its users are known.
  std::optional<Writing> ToChange();
  bool ReadUsers(const Reading& device);
  void KeepGuestsOwnGrant();
  bool ReadPorts(const Reading& device, bool com4);
  std::optional<bool> HasCom4(const Reading& device);
  bool NeedsAdministrator();

  /// What is asked of a user, with his name: a terminal shows no title, a narrow window not all.
  std::string Prompt(int user, int id) const;
  Ending AskPassword(const InputRequest& request, std::string& password);
  Ending AskAdministrators(std::string& password);
  Ending AskNew(int user, std::string& password);
  bool ConfirmRemoval(int user);
  bool Concerns(const Reading& station) const;
  /// Sends a line that changes settings, and says so when it was done.
  Ending Send(const Writing& device, const std::string& line,
              const std::vector<std::string>& passwords, bool settingPassword = false);

  Desk desk_;
  UserState state_;
  std::string administratorsPassword_;  // as last accepted; empty = not known, or he logged out
};

}  // namespace ostrel
