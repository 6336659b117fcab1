#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace spectrane {

/// Objects keep the order in which their members were added.
using Json = nlohmann::ordered_json;
/// A document that was read: members are found fast in it, however many there are.
using JsonInput = nlohmann::json;

/// The document without line ends. Doubles stand as the shortest decimal that reads back the same, always
/// recognisable as doubles ("1.0", "-0.0", "1e-300"); NaN and infinities are null. Bytes of a text that are
/// no UTF-8 become U+FFFD. Never throws for the content's sake.
std::string JsonText(const Json& json);

}  // namespace spectrane
