#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/numbers.h"
#include "base/numericfault.h"
#include "base/setting.h"

namespace spectrane {

/// One key of config.ini and the field of `Owner` it fills. The default is the value that the field has when
/// the keys are read. Field is a function without captures: `[](Owner& o) -> double& { return o.AbsTop; }`.
template <typename Owner>
struct SettingRow {
  const char* Section;
  const char* Key;
  std::variant<bool& (*)(Owner&), std::int32_t& (*)(Owner&), double& (*)(Owner&), std::string& (*)(Owner&)>
      Field;
  /// Values that a number may take, both included.
  double Lowest = -std::numeric_limits<double>::max();
  double Highest = std::numeric_limits<double>::max();
};

/// Tables one behind the other.
template <typename Owner, std::size_t... N>
constexpr std::array<SettingRow<Owner>, (N + ...)> JoinedRows(
    const std::array<SettingRow<Owner>, N>&... tables) {
  std::array<SettingRow<Owner>, (N + ...)> rows = {};
  std::size_t at = 0;
  const auto append = [&](const auto& table) {
    for (const SettingRow<Owner>& row : table) rows[at++] = row;
  };
  (append(tables), ...);
  return rows;
}

inline std::string SettingText(bool value) {
  return value ? "True" : "False";
}
inline std::string SettingText(std::int32_t value) {
  return std::to_string(value);
}
inline std::string SettingText(double value) {
  return ShortestText(value);
}
inline std::string SettingText(const std::string& value) {
  return value;
}

/// The stored words are "True" and "False" as they stand; another spelling is no Boolean.
inline bool ReadSettingText(const std::string& text, bool& value) {
  if (text != "True" && text != "False") return false;
  value = text == "True";
  return true;
}
inline bool ReadSettingText(const std::string& text, std::string& value) {
  value = text;
  return true;
}
inline bool ReadSettingText(const std::string& text, double& value) {
  const std::optional<double> number = ParseNumber(text);
  if (number) value = *number;
  return number.has_value();
}
inline bool ReadSettingText(const std::string& text, std::int32_t& value) {
  try {
    value = ParseLong(text);
    return true;
  } catch (const NumericFault&) {
    return false;
  }
}

/// The limits bind numbers only.
inline bool IsWithin(double value, double lowest, double highest) {
  return value >= lowest && value <= highest;
}
inline bool IsWithin(std::int32_t value, double lowest, double highest) {
  return IsWithin(static_cast<double>(value), lowest, highest);
}
inline bool IsWithin(bool, double, double) {
  return true;
}
inline bool IsWithin(const std::string&, double, double) {
  return true;
}

/// Takes `text` into the field of a row. False: it is no value of the field's type, or outside the row's
/// limits, and the field keeps what it had.
template <typename Owner>
bool TakeSetting(const SettingRow<Owner>& row, const std::string& text, Owner& owner) {
  return std::visit(
      [&](const auto field) {
        auto value = field(owner);
        if (!ReadSettingText(text, value) || !IsWithin(value, row.Lowest, row.Highest)) return false;
        field(owner) = value;
        return true;
      },
      row.Field);
}

/// Whether the field of a row has a value that can be stored.
template <typename Owner>
bool HasSetting(const SettingRow<Owner>& row, Owner& owner) {
  return std::visit([&](const auto field) { return IsWithin(field(owner), row.Lowest, row.Highest); },
                    row.Field);
}

/// The field of a row as the file stores it.
template <typename Owner>
SettingValue StoredSetting(const SettingRow<Owner>& row, Owner& owner) {
  return {row.Section, row.Key,
          std::visit([&owner](const auto field) { return SettingText(field(owner)); }, row.Field)};
}

/// Reads the keys of a table in its order; defaults of keys that are missing or empty go into the file
/// together. False: there were such defaults and the file could not take them; the fields are right all the
/// same.
template <typename Owner>
bool LoadSettings(Setting& settings, std::span<const SettingRow<Owner>> rows, Owner& owner) {
  std::vector<SettingValue> defaults;
  for (const SettingRow<Owner>& row : rows) {
    const std::string text = settings.GetSetting(row.Section, row.Key);
    if (!text.empty()) {
      TakeSetting(row, text, owner);
    } else if (HasSetting(row, owner)) {
      defaults.push_back(StoredSetting(row, owner));
    }
  }
  return defaults.empty() || settings.PutDefaults(defaults);
}

/// Writes the keys of a table in its order, with one replacement of the file. False: as PutSettings.
template <typename Owner>
bool StoreSettings(Setting& settings, std::span<const SettingRow<Owner>> rows, Owner& owner) {
  std::vector<SettingValue> values;
  for (const SettingRow<Owner>& row : rows) {
    if (HasSetting(row, owner)) values.push_back(StoredSetting(row, owner));
  }
  return settings.PutSettings(values);
}

}  // namespace spectrane
