#pragma once

// The numbers on which program and communication server agree.

namespace ostrel {

/// Error codes; each is the number of its message.
namespace code {
inline constexpr int kNoCommand = 1283;
inline constexpr int kTooManyChannels = 10011;
inline constexpr int kTimeout = 10012;
inline constexpr int kPortFailure = 10013;
inline constexpr int kSendError = 10014;
inline constexpr int kReceiveError = 10015;
inline constexpr int kTooBig = 10017;
inline constexpr int kOnlineTaken = 10018;
inline constexpr int kOnlineActive = 10019;
inline constexpr int kNeedsOnline = 10020;
inline constexpr int kFrameFailure = 10021;
inline constexpr int kNoChannel = 10026;
inline constexpr int kPortInUse = 10027;  // by another program, or there is none
inline constexpr int kNoSuchConnection = 10032;
inline constexpr int kPortTaken = 10033;  // by another connection
inline constexpr int kServerGone = 10041;
inline constexpr int kCannotConnect = 10042;
inline constexpr int kFaultyConnection = 10044;
inline constexpr int kServerNotStarted = 10065;
}  // namespace code

/// How the description of a time-out begins when the line never went out.
inline constexpr char kUnsentText[] = "nothing was sent";

/// What "CStatus" gives; every other value means waiting, too.
namespace status {
inline constexpr int kReady = 0;
inline constexpr int kWaiting = 1;
inline constexpr int kNothingSent = 3;
}  // namespace status

/// Kinds of channels, as "COpen" takes them.
namespace kind {
inline constexpr int kCommand = 2;
inline constexpr int kOnline = 3;
}  // namespace kind

/// Frame modes of "CFrame".
namespace frame {
inline constexpr int kTransparent = 0;
inline constexpr int kFramed = 2;
}  // namespace frame

}  // namespace ostrel
