#include "faults/bench/requestlog.h"

#include <algorithm>
#include <charconv>

namespace spectrane::campaign {
namespace {

template <typename T>
std::optional<T> WholeNumber(std::string_view text) {
  T value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return value;
}

}  // namespace

std::vector<LoggedRequest> RequestLog::News() {
  std::vector<LoggedRequest> news;
  if (!file_.isOpen() && !file_.open(QIODevice::ReadOnly)) return news;
  rest_ += file_.readAll();
  for (qsizetype end = rest_.indexOf('\n'); end >= 0; end = rest_.indexOf('\n')) {
    if (auto request = ParseLogLine(rest_.left(end).toStdString())) news.push_back(std::move(*request));
    rest_.remove(0, end + 1);
  }
  seen_ += static_cast<std::int64_t>(news.size());
  return news;
}

std::optional<std::vector<std::int32_t>> NumbersOf(const std::string& request, std::string_view answer,
                                                   std::size_t count) {
  if (!answer.starts_with(request) || !answer.ends_with('>')) return std::nullopt;
  answer.remove_prefix(std::min(request.size() + 2, answer.size()));
  std::vector<std::int32_t> numbers;
  while (numbers.size() < count) {
    const std::size_t end = answer.find('\r');
    if (end == std::string_view::npos) return std::nullopt;
    const auto number = WholeNumber<std::int32_t>(answer.substr(0, end));
    if (!number) return std::nullopt;
    numbers.push_back(*number);
    answer.remove_prefix(std::min(end + 2, answer.size()));
  }
  return numbers;
}

std::optional<std::int32_t> EnergyOf(const std::string& request, std::string_view answer) {
  constexpr std::string_view kVerb = "ge ";
  if (!request.starts_with(kVerb)) return std::nullopt;
  const auto count = WholeNumber<std::size_t>(std::string_view(request).substr(kVerb.size()));
  if (!count || *count < 3) return std::nullopt;
  auto numbers = NumbersOf(request, answer, *count);
  if (!numbers) return std::nullopt;
  // The highest, of equal ones the last, goes behind all others on one pass of neighbours that change places.
  for (std::size_t i = 1; i < *count; ++i) {
    if ((*numbers)[i - 1] > (*numbers)[i]) std::swap((*numbers)[i - 1], (*numbers)[i]);
  }
  // Halves go to the even neighbour: 15 of 30, 10 of 20, 5 of 10.
  const std::size_t half = *count / 2;
  const std::size_t place = *count % 2 != 0 && half % 2 != 0 ? half + 1 : half;
  return (*numbers)[place - 1];
}

}  // namespace spectrane::campaign
