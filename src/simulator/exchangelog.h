#pragma once

#include <cstdint>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

namespace spectrane {

/// One request and what the instrument put onto the wire for it.
struct ExchangeRecord {
  std::int64_t Number = 0;  ///< 1, 2, …
  std::int64_t AtMs = 0;    ///< when the instrument began with it
  std::string Fault;        ///< kind and parameters; empty when the answer is in order
  std::string Request;      ///< without the CR
  std::string Answer;       ///< every byte, in order
};

/// One line of the log: number, milliseconds, fault or "-", request, answer, parted by tabs; request and
/// answer escaped and in double quotes.
std::string LogLine(const ExchangeRecord& record);
/// The record of such a line; nothing when it is none.
std::optional<ExchangeRecord> ParseLogLine(std::string_view line);

/// A log file, flushed line by line.
class ExchangeLog {
 public:
  /// Starts a new file; false when it cannot be written.
  bool Open(const std::string& path);
  void Write(const ExchangeRecord& record);
  /// A remark between the exchanges: "# MILLISECONDS text".
  void Remark(std::int64_t atMs, std::string_view text);

 private:
  std::ofstream file_;
};

}  // namespace spectrane
