#include "cli/progressbar.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "acquire/plan.h"
#include "cli/operator.h"

namespace spectrane {
namespace {

constexpr std::int64_t kRepaintMs = 200;
constexpr std::int32_t kBarWidth = 30;
/// So long the plan is trusted more than the pace [s].
constexpr double kPaceCounts = 3.0;

}  // namespace

ProgressBar::ProgressBar(std::ostream& out, const Clock& clock, std::string caption, std::int32_t total,
                         double planned, bool hidden)
    : out_(out),
      clock_(clock),
      caption_(std::move(caption)),
      total_(total),
      planned_(planned),
      shown_(!hidden && total > 0 && &out == &std::cerr && Operator::SeesErrors()),
      startMs_(clock.NowMs()) {}

ProgressBar::~ProgressBar() {
  if (begun_) out_ << std::endl;
}

void ProgressBar::Show(std::int32_t done) {
  if (!shown_) return;
  const std::int64_t now = clock_.NowMs();
  if (begun_ && done < total_ && now - paintedMs_ < kRepaintMs) return;
  const double elapsed = static_cast<double>(now - startMs_) / 1000.0;
  std::string line = caption_ + " " + Line(done, total_, SecondsLeft(done, total_, elapsed, planned_));
  const std::size_t width = line.size();
  if (width < width_) line.append(width_ - width, ' ');
  width_ = width;
  out_ << '\r' << line << std::flush;
  begun_ = true;
  paintedMs_ = now;
}

std::string ProgressBar::Line(std::int32_t done, std::int32_t total, double secondsLeft) {
  const auto filled = static_cast<std::size_t>(std::int64_t{done} * kBarWidth / total);
  std::string line = "[" + std::string(filled, '#') + std::string(kBarWidth - filled, ' ') + "] " +
                     std::to_string(done) + " of " + std::to_string(total);
  if (done < total) line += ", " + DurationText(secondsLeft) + " left";
  return line;
}

double ProgressBar::SecondsLeft(std::int32_t done, std::int32_t total, double elapsed, double planned) {
  if (done >= total) return 0;
  const double byPlan = planned * (total - done) / total;
  if (done == 0) return std::max(planned - elapsed, 0.0);
  const double byPace = elapsed / done * (total - done);
  const double trust = std::min(elapsed / kPaceCounts, 1.0);
  return byPace * trust + byPlan * (1 - trust);
}

}  // namespace spectrane
