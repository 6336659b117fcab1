#include "reentrancy/shownrecords.h"

namespace spectrane::testing_reentrancy {
namespace {

/// A document window as its journal sees it.
struct SeenWindow : DocumentWindow {
  using DocumentWindow::MakeImage;
};

}  // namespace

ShownRecords RecordsOf(const DocumentWindow* window) {
  const auto image = window ? (window->*(&SeenWindow::MakeImage))() : std::nullopt;
  if (!image) return {};
  ShownRecords shown{image->Head.Option, {}, image->Head.RecordSize};
  shown.Records.resize(shown.RecordSize * static_cast<std::size_t>(image->Count));
  for (std::int32_t i = 0; i < image->Count; ++i) {
    image->Encode(i, reinterpret_cast<unsigned char*>(shown.Records.data()) +
                         shown.RecordSize * static_cast<std::size_t>(i));
  }
  return shown;
}

}  // namespace spectrane::testing_reentrancy
