#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <set>
#include <string>
#include <vector>

#include "base/basesupport.h"
#include "faults/failingcalls/failingcalls.h"

/// One save or export after the other with one call of the system failing in it, and what has to hold
/// afterwards.
namespace spectrane::testing_faults {

using failing_calls::Call;
using failing_calls::kSaveCalls;
using failing_calls::Plan;
using Counts = std::array<int, kSaveCalls>;

/// Rights of the old file, so that they have to be taken over.
inline constexpr mode_t kOldMode = 0640;

/// Whether every fault is to be tried with every call, instead of one after the other in turns.
inline bool Thorough() {
  return std::getenv("SPECTRANE_FAULTS_THOROUGH") != nullptr;
}

inline std::string NameOf(const Plan& plan) {
  return std::string(failing_calls::kCallNames.at(static_cast<std::size_t>(plan.Which))) + ":" +
         std::to_string(plan.Nth) + ":" + std::to_string(plan.Fault) + (plan.Ever ? ":ever" : ":once");
}

/// The faults to try in a save that makes these calls when all goes well. Removing the temporary file is
/// only done after another fault, so its own faults come beside a full disk elsewhere.
inline std::vector<Plan> PlansFor(const Counts& counts, bool thorough) {
  const auto changesMuch = [](Call call) {
    return call == Call::Write || call == Call::Sync || call == Call::Rename;
  };
  static const std::vector<int> numbers = {ENOSPC, EIO, EACCES};
  static const std::vector<int> inWrites = {ENOSPC, failing_calls::kShort, EIO, EACCES};
  std::vector<Plan> plans;
  std::size_t turn = 0;
  for (int call = 0; call < kSaveCalls; ++call) {
    const auto which = static_cast<Call>(call);
    const std::vector<int>& faults = which == Call::Write ? inWrites : numbers;
    for (int nth = 1; nth <= counts.at(static_cast<std::size_t>(call)); ++nth) {
      if (thorough) {
        for (const int fault : faults) {
          plans.push_back({which, nth, fault, false});
          plans.push_back({which, nth, fault, true});
        }
      } else {
        plans.push_back({which, nth, faults.at(turn % faults.size()), turn % 2 == 0});
        ++turn;
      }
      if (thorough || changesMuch(which)) plans.push_back({which, nth, failing_calls::kKill, false});
    }
  }
  return plans;
}

/// What the one who saves says of it.
enum class Claim { Saved, NotSaved, Killed };

/// A file of a folder of its own that is saved again and again.
struct SavedFile {
  std::string Folder;
  std::string Path;
  std::string Old;
  /// Whether these bytes are the whole new content; where nothing is given, they are the bytes of `New`.
  std::function<bool(const std::string&)> IsNew;
  std::string New;
  /// The moment of the save stands in the new content, in eight bytes.
  bool HasTime = false;

  void PutOld() const {
    WriteBytes(Path, Old);
    ::chmod(Path.c_str(), kOldMode);
  }
  bool HoldsNew(const std::string& bytes) const {
    if (IsNew) return IsNew(bytes);
    if (!HasTime || bytes.size() != New.size()) return bytes == New;
    const auto first = std::mismatch(New.begin(), New.end(), bytes.begin()).first;
    const auto last = std::mismatch(New.rbegin(), New.rend(), bytes.rbegin()).first.base();
    return last - first <= 8;
  }
};

/// What a save has left behind.
inline void ExpectOldOrNew(const SavedFile& file, Claim claim, bool mayLeaveTemporary) {
  const std::string bytes = ReadBytes(file.Path);
  const bool isOld = bytes == file.Old;
  const bool isNew = file.HoldsNew(bytes);
  switch (claim) {
    case Claim::Saved:
      EXPECT_TRUE(isNew) << "told as saved; " << bytes.size() << " bytes, " << (isOld ? "old" : "neither");
      break;
    case Claim::NotSaved:
      EXPECT_TRUE(isOld) << "told as not saved; " << bytes.size() << " bytes";
      break;
    case Claim::Killed:
      EXPECT_TRUE(isOld || isNew) << "killed; " << bytes.size() << " bytes";
      break;
  }
  struct stat facts {};
  EXPECT_EQ(::stat(file.Path.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, kOldMode);
  for (const auto& entry : std::filesystem::directory_iterator(file.Folder)) {
    const std::string name = entry.path().filename().string();
    if (entry.path() == file.Path) continue;
    EXPECT_TRUE(mayLeaveTemporary && name.starts_with(".spectrane-") && name.ends_with(".tmp"))
        << "left behind: " << name;
    std::filesystem::remove(entry.path());
  }
}

/// Whether a save with that fault has to be told as one that failed: the file's own bytes, their way to the
/// disk, its rights and its name. Of the folder, which is synced and closed last, nothing hangs on it.
inline bool MustFail(const Plan& plan, const Counts& counts) {
  const bool reads = counts.at(static_cast<std::size_t>(Call::Read)) > 0;
  switch (plan.Which) {
    case Call::Write:
    case Call::Mode:
    case Call::Rename:
      return true;
    case Call::Sync:
      return plan.Nth == 1;
    case Call::Close:
      return !reads && plan.Nth <= 2;
    default:
      return false;
  }
}

/// Runs `work` as a process of its own, and tells whether it came to its end.
template <typename Work>
bool KilledIn(const Work& work) {
  const pid_t child = ::fork();
  if (child == 0) {
    work();
    ::_exit(0);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

inline void TellCells(const std::string& name, std::size_t cells, std::size_t kills, const Counts& counts) {
  std::cout << "cells of " << name << ": " << cells << ", of them killed " << kills << ";";
  for (int call = 0; call < kSaveCalls; ++call)
    std::cout << ' ' << failing_calls::kCallNames.at(static_cast<std::size_t>(call)) << ' '
              << counts.at(static_cast<std::size_t>(call));
  std::cout << '\n';
}

inline Counts CountsNow() {
  Counts counts = {};
  for (int call = 0; call < kSaveCalls; ++call)
    counts.at(static_cast<std::size_t>(call)) = failing_calls::CountOf(static_cast<Call>(call));
  return counts;
}

/// Tries a save of this process with every fault. `prepare` brings everything to where the save begins; the
/// old file stands by then. `save` saves, and tells whether it says that it has; `check` (when given) looks
/// at what it shows afterwards.
inline void TryAll(const std::string& name, SavedFile file, const std::function<void()>& prepare,
                   const std::function<bool()>& save, const std::function<void(bool saved)>& check = {},
                   bool thorough = true) {
  const auto begin = [&](const Plan& plan) {
    file.PutOld();
    prepare();
    failing_calls::Arm(file.Folder.c_str(), plan);
  };
  // The first save of a process in a folder looks for what killed ones have left there.
  file.PutOld();
  prepare();
  save();
  begin({});
  ASSERT_TRUE(save()) << name << ": without any fault";
  failing_calls::Disarm();
  const Counts counts = CountsNow();
  if (!file.IsNew) file.New = ReadBytes(file.Path);
  ASSERT_NE(ReadBytes(file.Path), file.Old) << name << ": the save changes nothing";
  ExpectOldOrNew(file, Claim::Saved, false);
  for (const Call call : {Call::Open, Call::Write, Call::Sync, Call::Close, Call::Rename})
    ASSERT_GT(counts.at(static_cast<std::size_t>(call)), 0) << name << ": the calls are not seen";

  const std::vector<Plan> plans = PlansFor(counts, thorough);
  std::size_t kills = 0;
  for (const Plan& plan : plans) {
    SCOPED_TRACE(name + " " + NameOf(plan));
    if (plan.Fault == failing_calls::kKill) {
      file.PutOld();
      prepare();
      EXPECT_TRUE(KilledIn([&] {
        failing_calls::Arm(file.Folder.c_str(), plan);
        save();
      }));
      ExpectOldOrNew(file, Claim::Killed, true);
      ++kills;
      continue;
    }
    begin(plan);
    const bool saved = save();
    failing_calls::Disarm();
    EXPECT_TRUE(failing_calls::Happened());
    EXPECT_FALSE(saved && MustFail(plan, counts));
    ExpectOldOrNew(file, saved ? Claim::Saved : Claim::NotSaved, false);
    if (check) check(saved);
  }
  TellCells(name, plans.size(), kills, counts);
}

}  // namespace spectrane::testing_faults
