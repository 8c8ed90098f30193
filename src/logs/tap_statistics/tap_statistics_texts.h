#pragma once

#include "base/messages.h"

namespace ostrel::text {

// The tap statistics' own texts: Own(500) to Own(599).
inline constexpr int kTapPosition = Own(500);
inline constexpr int kCounter = Own(501);
inline constexpr int kDelete = Own(502);
inline constexpr int kCopy = Own(503);
inline constexpr int kChooseDeviceFirst = Own(504);
inline constexpr int kNotReadYet = Own(505);
inline constexpr int kCountersMissing = Own(506);

}  // namespace ostrel::text
