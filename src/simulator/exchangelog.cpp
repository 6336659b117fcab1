#include "simulator/exchangelog.h"

#include <array>
#include <charconv>
#include <filesystem>

#include "simulator/escapedtext.h"

namespace spectrane {
namespace {

bool ReadNumber(std::string_view text, std::int64_t& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc{} && end == text.data() + text.size();
}

std::optional<std::string> Unquote(std::string_view text) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') return std::nullopt;
  return Unescape(text.substr(1, text.size() - 2));
}

}  // namespace

std::string LogLine(const ExchangeRecord& record) {
  return std::to_string(record.Number) + '\t' + std::to_string(record.AtMs) + '\t' +
         (record.Fault.empty() ? "-" : record.Fault) + "\t\"" + Escape(record.Request) + "\"\t\"" +
         Escape(record.Answer) + '"';
}

std::optional<ExchangeRecord> ParseLogLine(std::string_view line) {
  std::array<std::string_view, 5> fields;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::size_t tab = i + 1 < fields.size() ? line.find('\t') : line.size();
    if (tab == std::string_view::npos) return std::nullopt;
    fields[i] = line.substr(0, tab);
    line.remove_prefix(std::min(tab + 1, line.size()));
  }
  ExchangeRecord record;
  const auto request = Unquote(fields[3]);
  const auto answer = Unquote(fields[4]);
  if (!ReadNumber(fields[0], record.Number) || !ReadNumber(fields[1], record.AtMs) || !request || !answer) {
    return std::nullopt;
  }
  if (fields[2] != "-") record.Fault = std::string(fields[2]);
  record.Request = *request;
  record.Answer = *answer;
  return record;
}

bool ExchangeLog::Open(const std::string& path) {
  const std::filesystem::path file(reinterpret_cast<const char8_t*>(path.c_str()));
  file_.open(file, std::ios::binary | std::ios::trunc);
  file_ << "# simulated instrument: number, milliseconds, fault, request, answer\n" << std::flush;
  return file_.good();
}

void ExchangeLog::Write(const ExchangeRecord& record) {
  file_ << LogLine(record) << '\n' << std::flush;
}

void ExchangeLog::Remark(std::int64_t atMs, std::string_view text) {
  file_ << "# " << atMs << ' ' << Escape(text) << '\n' << std::flush;
}

}  // namespace spectrane
