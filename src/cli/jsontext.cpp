#include "cli/jsontext.h"

#include <cmath>

#include "base/numbers.h"

namespace spectrane {
namespace {

void AppendNumber(double value, std::string& text) {
  if (!std::isfinite(value)) {
    text += "null";
    return;
  }
  // The JSON library's own digits are not the shortest for every value.
  const std::string digits = ShortestText(value);
  text += digits;
  if (digits.find_first_of(".eE") == std::string::npos) text += ".0";
}

void AppendString(const Json& json, std::string& text) {
  text += json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void Append(const Json& json, std::string& text) {
  bool first = true;
  const auto separate = [&] {
    if (!first) text += ',';
    first = false;
  };
  if (json.is_object()) {
    text += '{';
    for (const auto& [name, value] : json.items()) {
      separate();
      AppendString(name, text);
      text += ':';
      Append(value, text);
    }
    text += '}';
  } else if (json.is_array()) {
    text += '[';
    for (const Json& value : json) {
      separate();
      Append(value, text);
    }
    text += ']';
  } else if (json.is_number_float()) {
    AppendNumber(json.get<double>(), text);
  } else {
    AppendString(json, text);
  }
}

}  // namespace

std::string JsonText(const Json& json) {
  std::string text;
  Append(json, text);
  return text;
}

}  // namespace spectrane
