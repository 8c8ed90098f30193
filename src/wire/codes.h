#pragma once

// The numbers on which program and communication server agree.

namespace ostrel {

/// Error codes; each is the number of its message.
struct Code {
  static constexpr int kNoCommand = 1283;
  static constexpr int kTooManyChannels = 10011;
  static constexpr int kTimeout = 10012;
  static constexpr int kPortFailure = 10013;
  static constexpr int kSendError = 10014;
  static constexpr int kReceiveError = 10015;
  static constexpr int kTooBig = 10017;
  static constexpr int kOnlineTaken = 10018;
  static constexpr int kOnlineActive = 10019;
  static constexpr int kNeedsOnline = 10020;
  static constexpr int kFrameFailure = 10021;
  static constexpr int kNoChannel = 10026;
  static constexpr int kPortInUse = 10027;  // by another program, or there is none
  static constexpr int kNoSuchConnection = 10032;
  static constexpr int kPortTaken = 10033;  // by another connection
  static constexpr int kServerGone = 10041;
  static constexpr int kCannotConnect = 10042;
  static constexpr int kFaultyConnection = 10044;
  static constexpr int kServerNotStarted = 10065;
};

/// How the description of a time-out begins when the line never went out.
inline constexpr char kUnsentText[] = "nothing was sent";

/// What "CStatus" gives; every other value means waiting, too.
struct ChannelStatus {
  static constexpr int kReady = 0;
  static constexpr int kWaiting = 1;
  static constexpr int kNothingSent = 3;
};

/// Kinds of channels, as "COpen" takes them.
struct ChannelKind {
  static constexpr int kCommand = 2;
  static constexpr int kOnline = 3;
};

/// Frame modes of "CFrame".
struct FrameMode {
  static constexpr int kTransparent = 0;
  static constexpr int kFramed = 2;
};

}  // namespace ostrel
