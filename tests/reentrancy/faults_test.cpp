// Faults that are thrown: the line to the instrument throws at one request after another.

#include <functional>
#include <stdexcept>

#include "app/documentkinds.h"
#include "app/ground/guardedapplication.h"
#include "reentrancy/procedures.h"
#include "reentrancy/quickruns.h"

namespace spectrane::testing_reentrancy {
namespace {

class ThrownFaults : public QuickRuns {
 protected:
  ThrownFaults() {
    Border().swap(before_);
    Border() = [this](const std::exception& fault) {
      ++atTheBorder_;
      Main().CommandEndedEarly(fault);
    };
  }
  ~ThrownFaults() override { Border() = before_; }
  static std::function<void(const std::exception&)>& Border() {
    return static_cast<GuardedApplication*>(qApp)->OnFault;
  }

  /// The answer to that request [from 1] throws.
  void ThrowAt(std::size_t request) {
    Instrument.OnExchange = [this, request](const ExchangeRecord& record) {
      Requests.push_back(record.Request);
      if (Requests.size() == request) throw std::runtime_error("out of everything");
    };
  }

  /// As an event begins it.
  void Begin(const Procedure& procedure) {
    QTimer::singleShot(0, &Main(), [&] { procedure.Run(*this); });
    Settle();
  }

  int atTheBorder_ = 0;
  std::function<void(const std::exception&)> before_;
};

TEST_F(ThrownFaults, W09_AFaultInAnyExchangeEndsThereAndTheNextRunIsWhole) {
  std::size_t cells = 0;
  for (const Procedure& procedure : Procedures()) {
    const Undisturbed alone = Alone(procedure);
    const std::size_t step = IsLongForm() ? 1 : 1 + alone.Requests.size() / 2;
    for (std::size_t request = 1; request <= alone.Requests.size(); request += step) {
      SCOPED_TRACE(std::string(procedure.Name) + ", request " + std::to_string(request));
      Prepare(procedure);
      ThrowAt(request);
      Begin(procedure);
      KeepRequests();
      ExpectIdle();
      EXPECT_TRUE(!State().InstrumentConnected || Main().SampleTimer().isActive());
      ExpectWhole(procedure, alone);
      ++cells;
      if (HasFatalFailure()) return;
    }
  }
  EXPECT_GE(cells, Procedures().size());
  EXPECT_GT(atTheBorder_, 0) << "what no command has begun ends at the border of the application";
}

TEST_F(ThrownFaults, W09_AFaultInASlotInsideAWaitLeavesTheRunWhole) {
  for (const Procedure& procedure : Procedures()) {
    SCOPED_TRACE(procedure.Name);
    const Undisturbed alone = Alone(procedure);
    for (int yield = 1; yield <= alone.Yields; yield += 1 + alone.Yields / 2) {
      Prepare(procedure);
      QObject thrower;
      Loop.Arm(yield, [&thrower](bool) {
        QTimer::singleShot(0, &thrower, [] { throw std::runtime_error("in a slot"); });
      });
      const int before = atTheBorder_;
      procedure.Run(*this);
      Settle();
      EXPECT_EQ(atTheBorder_, before + 1);
      EXPECT_EQ(Requests, alone.Requests);
      ExpectIdle();
    }
  }
}

TEST_F(ThrownFaults, W09_AFaultInTheExchangesOfAnExitLeavesAProgramThatCanBeUsed) {
  Connect();
  for (const std::size_t request : {1U, 2U}) {
    Connect();
    Requests.clear();
    ThrowAt(request);
    QTimer::singleShot(0, &Main(), [this] { Main().close(); });
    Settle();
    KeepRequests();
    ASSERT_EQ(Requests.size(), request);
    EXPECT_TRUE(Main().isVisible());
    ExpectIdle();
  }
  EXPECT_TRUE(Main().close());
}

TEST_F(ThrownFaults, W09_AFaultInTheQuestionOfACloseKeepsTheWindowAndItsRows) {
  for (const bool whole : {false, true}) {
    SCOPED_TRACE(whole ? "Exit" : "close");
    SetSampler(false);
    Connect();
    Open(kPhotometryFile);
    Choose(kSetBlank);
    Choose(kStartTest);
    ASSERT_TRUE(Main().ActiveForm()->IsWorkUnsaved());
    Person.Throws = true;
    QTimer::singleShot(0, &Main(), [&] {
      if (whole) {
        Main().close();
      } else {
        Main().mmuFileCloseOne();
      }
    });
    Settle();
    Person.Throws = false;
    EXPECT_GE(atTheBorder_, 1);
    EXPECT_TRUE(Main().isVisible());
    ASSERT_TRUE(Main().ActiveForm());
    EXPECT_TRUE(Main().ActiveForm()->IsWorkUnsaved());
    ExpectIdle();
  }
}

}  // namespace
}  // namespace spectrane::testing_reentrancy
