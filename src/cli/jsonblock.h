#pragma once

#include <stdexcept>
#include <string>

#include "cli/jsontext.h"
#include "files/layout.h"

namespace spectrane {

/// A JSON document that does not say what is wanted: where, and what is wrong.
class BadJson : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The members of an object that `layout` describes, under the names and in the order of the layout.
Json JsonOfBlock(Layout layout, const void* object);

/// The way back. Members that `json` lacks keep their value; what it has beyond them is passed over. null
/// stands for a double that is not a number. Throws BadJson; `where` begins its text ("option", "data[3]").
void BlockFromJson(Layout layout, const JsonInput& json, const std::string& where, void* object);

}  // namespace spectrane
