#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace spectrane {

/// Runs `work` in a child process; true when it gave true there.
template <typename Work>
bool InChild(Work work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work() ? 0 : 1);
  int status = -1;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace spectrane
