#include "link/shutdownsignals.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>

namespace spectrane::testing_link {
namespace {

/// The signal that ended a process which did this; 0 when none did.
template <typename Work>
int SignalThatEnds(const Work& work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(0);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

TEST(ShutdownSignals, EachSignalIsTakenUpInTheEventLoop) {
  int wanted = 0;
  const ShutdownSignals watch([&wanted] { ++wanted; });
  int raised = 0;
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    raise(number);
    EXPECT_EQ(wanted, raised) << "not inside the handler";
    QCoreApplication::processEvents();
    EXPECT_EQ(wanted, ++raised);
  }
}

TEST(ShutdownSignals, AfterwardsASignalEndsTheProgramAsAnyOther) {
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    EXPECT_EQ(SignalThatEnds([number] {
                {
                  const ShutdownSignals watch([] {});
                }
                raise(number);
              }),
              number);
  }
}

TEST(ShutdownSignals, WithoutAFreeHandleASignalEndsTheProgramAsAnyOther) {
  EXPECT_EQ(SignalThatEnds([] {
              const rlimit none = {0, 0};
              setrlimit(RLIMIT_NOFILE, &none);
              {
                const ShutdownSignals watch([] {});
              }
              const ShutdownSignals again([] {});
              raise(SIGTERM);
            }),
            SIGTERM);
}

}  // namespace
}  // namespace spectrane::testing_link
#endif
