#include "cli/jsonblock.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace spectrane {
namespace {

Json JsonOfElement(const LayoutField& field, const void* element) {
  return VisitElement(field.Type, element, [](const auto& value) -> Json { return value; });
}

Json JsonOfField(const LayoutField& field, const void* object) {
  if (field.Dimensions == 0) return JsonOfElement(field, field.Element(object, 0));
  Json rows = Json::array();
  for (std::size_t r = 0; r < field.Rows; ++r) {
    if (field.Dimensions == 1) {
      rows.push_back(JsonOfElement(field, field.Element(object, r)));
      continue;
    }
    Json columns = Json::array();
    for (std::size_t c = 0; c < field.Columns; ++c) {
      columns.push_back(JsonOfElement(field, field.Element(object, r * field.Columns + c)));
    }
    rows.push_back(std::move(columns));
  }
  return rows;
}

[[noreturn]] void Reject(const std::string& where, const char* wanted) {
  throw BadJson(where + " is " + wanted);
}

template <typename T>
T WholeNumber(const JsonInput& json, const std::string& where) {
  constexpr T kLeast = std::numeric_limits<T>::min();
  constexpr T kMost = std::numeric_limits<T>::max();
  if (json.is_number_unsigned()) {
    const auto value = json.get<std::uint64_t>();
    if (value <= static_cast<std::uint64_t>(kMost)) return static_cast<T>(value);
    Reject(where, "too large");
  }
  if (json.is_number_integer()) {
    const auto value = json.get<std::int64_t>();
    if (value >= kLeast && value <= kMost) return static_cast<T>(value);
    Reject(where, "too large");
  }
  if (json.is_number_float()) {
    const auto value = json.get<double>();
    if (std::trunc(value) != value) Reject(where, "not a whole number");
    if (value >= kLeast && value <= kMost) return static_cast<T>(value);
    Reject(where, "too large");
  }
  Reject(where, "not a whole number");
}

double Number(const JsonInput& json, const std::string& where) {
  if (json.is_null()) return std::numeric_limits<double>::quiet_NaN();
  if (!json.is_number()) Reject(where, "not a number");
  // "-0" without a point is read as a whole number, the only one that is not unsigned and yet 0.
  const bool signedZero =
      json.is_number_integer() && !json.is_number_unsigned() && json.get<std::int64_t>() == 0;
  return signedZero ? -0.0 : json.get<double>();
}

/// Takes one member as what it is in the program.
struct MemberReader {
  const JsonInput& Value;
  const std::string& Where;

  void operator()(std::int32_t& member) const { member = WholeNumber<std::int32_t>(Value, Where); }
  void operator()(std::int16_t& member) const { member = WholeNumber<std::int16_t>(Value, Where); }
  void operator()(double& member) const { member = Number(Value, Where); }
  void operator()(bool& member) const {
    if (!Value.is_boolean()) Reject(Where, "neither true nor false");
    member = Value.get<bool>();
  }
  void operator()(std::string& member) const {
    if (!Value.is_string()) Reject(Where, "not a text");
    member = Value.get<std::string>();
  }
};

void CheckArray(const JsonInput& json, std::size_t most, const std::string& where) {
  if (!json.is_array()) Reject(where, "not an array");
  if (json.size() > most) Reject(where, "too long");
}

std::string Indexed(const std::string& where, std::size_t index) {
  return where + "[" + std::to_string(index) + "]";
}

void FieldFromJson(const LayoutField& field, const JsonInput& json, const std::string& where, void* object) {
  const auto take = [&](const JsonInput& value, std::size_t index, const std::string& place) {
    VisitElement(field.Type, WritableElement(field, object, index), MemberReader{value, place});
  };
  if (field.Dimensions == 0) {
    take(json, 0, where);
    return;
  }
  CheckArray(json, field.Rows, where);
  for (std::size_t r = 0; r < json.size(); ++r) {
    const std::string row = Indexed(where, r);
    if (field.Dimensions == 1) {
      take(json[r], r, row);
      continue;
    }
    CheckArray(json[r], field.Columns, row);
    for (std::size_t c = 0; c < json[r].size(); ++c) {
      take(json[r][c], r * field.Columns + c, Indexed(row, c));
    }
  }
}

}  // namespace

Json JsonOfBlock(Layout layout, const void* object) {
  Json json = Json::object();
  for (const LayoutField& field : layout) json[field.Name] = JsonOfField(field, object);
  return json;
}

void BlockFromJson(Layout layout, const JsonInput& json, const std::string& where, void* object) {
  if (!json.is_object()) Reject(where, "not an object");
  for (const LayoutField& field : layout) {
    const auto found = json.find(field.Name);
    if (found != json.end()) FieldFromJson(field, *found, where + "." + field.Name, object);
  }
}

}  // namespace spectrane
