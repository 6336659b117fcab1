#include "cli/packdocument.h"

#include "cli/command.h"
#include "cli/filekinds.h"
#include "cli/jsonblock.h"

namespace spectrane {
namespace {

JsonInput ParseDocument(const std::string& text) {
  try {
    return JsonInput::parse(text);
  } catch (const JsonInput::parse_error& fault) {
    throw BadJson("not valid JSON at byte " + std::to_string(fault.byte));
  } catch (const JsonInput::out_of_range&) {
    throw BadJson("has a number that is too large");
  }
}

const BatchKind& KindOfDocument(const JsonInput& document) {
  if (!document.is_object()) throw BadJson("not a JSON object");
  const auto name = document.find("kind");
  if (name == document.end()) throw BadJson("kind is missing");
  if (!name->is_string()) throw BadJson("kind is not a text");
  const BatchKind* const kind = KindOfName(name->get<std::string>());
  if (kind == nullptr) throw BadJson("unknown kind " + JsonText(Json(name->get<std::string>())));
  return *kind;
}

}  // namespace

PackedFile PackDocument(const std::string& text, const std::string& path) {
  const JsonInput document = ParseDocument(text);
  PackedFile packed{&KindOfDocument(document)};
  const FileFault fault = packed.Kind->Pack(document, path, packed.Records, packed.TextLost);
  if (fault) throw Refusal(path, fault);
  return packed;
}

}  // namespace spectrane
