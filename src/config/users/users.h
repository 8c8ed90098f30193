#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "base/dialogs.h"
#include "base/messages.h"
#include "config/users/user_lines.h"
#include "device/selection.h"
#include "link/commands.h"
#include "link/link.h"

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
  enum class Outcome { kDone, kCancelled, kFailed };

  Users(Link& link, Commands& commands, const Selection& selection, Dialogs& dialogs,
        const Messages& messages);

  const UserState& State() const { return state_; }
  /// "User 1 (Admin)"; the number itself where there is no such user.
  std::string UserName(int user) const;
  /// Another device was selected: nothing of it is known, and the password is forgotten.
  void DeviceChanged();

  /// Reads who is logged in, the grant, the users and the exceptions. Without an administrator's
  /// password State().protects is false, and the other users and the ports are not read.
  bool PWReadAll();
  /// Reads who is logged in and the grant alone.
  bool ReadLogin();
  /// Reads the grant of a station; nothing after a failure, which is shown.
  std::optional<int> GrantRead(const std::string& prefix);

  /// Asks for the user's password and logs him in at the selected device.
  Outcome LogIn(int user);
  /// The same with a password that was asked for, at the station with this prefix.
  bool LogIn(const std::string& prefix, int user, const std::string& password);
  /// False when the line was not sent.
  bool LogOut();

  /// Asks for what is needed, and for a confirmation before a password is removed.
  Outcome SetPassword(int user);
  /// Grant level 0..5 and minutes 0..65535 until the logout, 0 = never.
  Outcome SetUser(int user, int grant, int minutes);
  Outcome Unprotect();
  /// A COM4 that is absent stays as it is.
  Outcome SetPorts(PortExceptions ports);

 private:
  bool Exchange(const std::string& line, std::string& answer,
                const std::vector<std::string>& passwords = {}, bool settingPassword = false);
  std::optional<std::string> Reading() const;
  std::optional<std::string> Writing();
  bool ReadUsers(const std::string& prefix);
  bool ReadPorts(const std::string& prefix, bool com4);
  std::optional<bool> HasCom4(const std::string& prefix);
  bool NeedsAdministrator();

  Outcome AskPassword(const InputRequest& request, std::string& password);
  Outcome AskAdministrators(std::string& password);
  Outcome AskNew(int user, std::string& password);
  bool ConfirmRemoval(int user);
  bool Concerns(const std::string& prefix) const;
  /// Sends a line that changes settings, and says so when it was done.
  Outcome Send(const std::string& line, const std::vector<std::string>& passwords,
               bool settingPassword = false);

  Link& link_;
  Commands& commands_;
  const Selection& selection_;
  Dialogs& dialogs_;
  const Messages& messages_;
  UserState state_;
  std::string administrators_;  // password, as last accepted; empty = not known, or he logged out
};

}  // namespace ostrel
