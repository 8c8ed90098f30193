#pragma once

#include "base/messages.h"

namespace ostrel::text {

// The user management's own texts: Own(400) to Own(499).
inline constexpr int kPasswordProblem = Own(400);
inline constexpr int kRemovePassword = Own(401);
inline constexpr int kSendAnyway = Own(402);
inline constexpr int kMasterPassword = Own(403);
inline constexpr int kUser = Own(405);
inline constexpr int kPassword = Own(406);
inline constexpr int kGrant = Own(407);
inline constexpr int kTimeoutMinutes = Own(408);
inline constexpr int kIsSet = Own(409);
inline constexpr int kLoggedIn = Own(410);
inline constexpr int kGrantInForce = Own(411);
inline constexpr int kLogIn = Own(412);
inline constexpr int kLogOut = Own(413);
inline constexpr int kSetPassword = Own(414);
inline constexpr int kSendSettings = Own(415);
inline constexpr int kUnprotect = Own(416);
inline constexpr int kSendExceptions = Own(417);
inline constexpr int kFieldUsers = Own(418);
inline constexpr int kFieldGrant = Own(419);
inline constexpr int kFieldTimeout = Own(420);
inline constexpr int kFieldUser = Own(421);
inline constexpr int kFieldPassword = Own(422);
inline constexpr int kRefresh = Own(423);
inline constexpr int kLoginTitle = Own(424);
inline constexpr int kGrantsTitle = Own(425);
inline constexpr int kDefinePassword = Own(426);
inline constexpr int kPortExcepted = Own(427);
inline constexpr int kPortProtected = Own(428);
inline constexpr int kChooseGrant = Own(429);

}  // namespace ostrel::text
