#include "base/dateserial.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <ctime>

#include "base/numbers.h"

namespace spectrane {
namespace {

constexpr std::int64_t kMsPerDay = 86'400'000;
constexpr std::chrono::sys_days kDayZero = std::chrono::year{1899} / 12 / 30;
constexpr std::int64_t kFirstDay = (std::chrono::sys_days{std::chrono::year{100} / 1 / 1} - kDayZero).count();
constexpr std::int64_t kEndDay = (std::chrono::sys_days{std::chrono::year{10000} / 1 / 1} - kDayZero).count();

}  // namespace

double SerialFromCivil(const CivilTime& civil) {
  using namespace std::chrono;
  const sys_days firstOfMonth = year{civil.Year} / static_cast<int>(civil.Month) / 1;
  const std::int64_t days = (firstOfMonth - kDayZero).count() + civil.Day - 1;
  const std::int64_t seconds = (std::int64_t{civil.Hour} * 60 + civil.Minute) * 60 + civil.Second;
  const std::int64_t ms = days * kMsPerDay + seconds * 1000 + civil.Millisecond;
  return static_cast<double>(ms) / static_cast<double>(kMsPerDay);
}

std::optional<CivilTime> CivilFromSerial(double serial) {
  using namespace std::chrono;
  if (!(serial >= static_cast<double>(kFirstDay) && serial < static_cast<double>(kEndDay)))
    return std::nullopt;
  const auto ms = static_cast<std::int64_t>(std::floor(serial * static_cast<double>(kMsPerDay) + 0.5));
  std::int64_t day = ms / kMsPerDay;
  std::int64_t rest = ms % kMsPerDay;
  if (rest < 0) {
    --day;
    rest += kMsPerDay;
  }
  if (day >= kEndDay) return std::nullopt;
  const year_month_day date{kDayZero + days{day}};
  CivilTime civil;
  civil.Year = static_cast<int>(date.year());
  civil.Month = static_cast<int>(static_cast<unsigned>(date.month()));
  civil.Day = static_cast<int>(static_cast<unsigned>(date.day()));
  civil.Millisecond = static_cast<int>(rest % 1000);
  civil.Second = static_cast<int>(rest / 1000 % 60);
  civil.Minute = static_cast<int>(rest / 60'000 % 60);
  civil.Hour = static_cast<int>(rest / 3'600'000);
  return civil;
}

double Now() {
  using namespace std::chrono;
  const auto sinceEpoch = duration_cast<milliseconds>(system_clock::now().time_since_epoch());
  const auto whole = floor<seconds>(sinceEpoch);
  const auto time = static_cast<std::time_t>(whole.count());
  std::tm local{};
#ifdef _WIN32
  ::localtime_s(&local, &time);
#else
  ::localtime_r(&time, &local);
#endif
  return SerialFromCivil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                          local.tm_sec, static_cast<int>((sinceEpoch - whole).count())});
}

std::string DateTimeText(double serial) {
  const std::optional<CivilTime> civil = CivilFromSerial(serial);
  if (!civil) return {};
  return Format(civil->Year, "0000") + "-" + Format(civil->Month, "00") + "-" + Format(civil->Day, "00") +
         "  " + Format(civil->Hour, "00") + ":" + Format(civil->Minute, "00") + ":" +
         Format(civil->Second, "00");
}

}  // namespace spectrane
