#pragma once

#include <array>

/// Calls of the system that fail on demand, for files below one folder. The library stands in front of the
/// C library: a test program that links it, or any program that has it in LD_PRELOAD, calls through it.
///
/// A program of its own is armed by its environment: SPECTRANE_FAILING_CALLS="call:nth:fault:once" (or
/// ":ever"), SPECTRANE_FAILING_FOLDER, and SPECTRANE_FAILING_COUNTS, a file that gets the numbers of calls
/// at the end.
namespace spectrane::failing_calls {

/// The first ones are those of a save or an export, which are all tried in turn; the others are for tests
/// that name them.
enum class Call {
  Open,
  Read,
  Write,
  Sync,
  Close,
  Rename,
  Mode,
  Remove,
  Cut,
  Seek,
  Length,
  Stream,
  Lock,
  Wait
};
inline constexpr int kSaveCalls = 9;
inline constexpr int kCalls = 14;
inline constexpr std::array<const char*, kCalls> kCallNames = {"open",   "read",   "write",  "sync", "close",
                                                               "rename", "mode",   "remove", "cut",  "seek",
                                                               "length", "stream", "lock",   "wait"};

/// What happens in the place of a call, besides the error numbers of the system.
/// Half of the bytes are written; the next write of the file fails with ENOSPC, when it was not cut before.
inline constexpr int kShort = -1;
inline constexpr int kKill = -2;  ///< the process is killed, in the middle of the bytes of a write
inline constexpr int kNothing = 0;

struct Plan {
  Call Which = Call::Open;
  /// From 1.
  int Nth = 1;
  int Fault = kNothing;
  /// All further calls of the same name fail, too.
  bool Ever = false;
  /// Besides, no file can be cut.
  bool CutsFail = false;
};

/// From now on the calls below `folder` are counted from 0, and fail as planned. Descriptors that are open
/// already are left alone.
void Arm(const char* folder, const Plan& plan);
/// Another plan; counts and descriptors go on.
void Replan(const Plan& plan);
/// Nothing fails any more.
void Disarm();
/// Calls since Arm().
int CountOf(Call call);
/// Whether the planned fault took place.
bool Happened();

}  // namespace spectrane::failing_calls
