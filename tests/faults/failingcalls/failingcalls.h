#pragma once

#include <array>

/// Calls of the system that fail on demand, for files below one folder. The library stands in front of the
/// C library: a test program that links it, or any program that has it in LD_PRELOAD, calls through it.
///
/// A program of its own is armed by its environment: SPECTRANE_FAILING_CALLS="call:nth:fault:once" (or
/// ":ever"), SPECTRANE_FAILING_FOLDER, and SPECTRANE_FAILING_COUNTS, a file that gets the numbers of calls
/// at the end.
namespace spectrane::failing_calls {

enum class Call { Open, Read, Write, Sync, Close, Rename, Mode, Remove };
inline constexpr int kCalls = 8;
inline constexpr std::array<const char*, kCalls> kCallNames = {"open",  "read",   "write", "sync",
                                                               "close", "rename", "mode",  "remove"};

/// What happens in the place of a call, besides the error numbers of the system.
inline constexpr int kShort = -1;  ///< half of the bytes are written; the next call fails with ENOSPC
inline constexpr int kKill = -2;   ///< the process is killed, in the middle of the bytes of a write
inline constexpr int kNothing = 0;

struct Plan {
  Call Which = Call::Open;
  /// From 1.
  int Nth = 1;
  int Fault = kNothing;
  /// All further calls of the same name fail, too.
  bool Ever = false;
};

/// From now on the calls below `folder` are counted from 0, and fail as planned. Descriptors that are open
/// already are left alone.
void Arm(const char* folder, const Plan& plan);
/// Nothing fails any more.
void Disarm();
/// Calls since Arm().
int CountOf(Call call);
/// Whether the planned fault took place.
bool Happened();

}  // namespace spectrane::failing_calls
