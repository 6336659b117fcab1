#include "app/viewflags.h"

#include "app/ground/commands.h"

namespace spectrane {
namespace {

constexpr ViewFlag kViewFlags[] = {
    {kMainBar, "Main toolsbar", &WindowSettings::MainToolbar},
    {kSpectrumBar, "spectrum toolsbar", &WindowSettings::SpectrumToolbar},
    {kOperateBar, "Operate toolsbar", &WindowSettings::OperateToolbar},
    {kDataViewBar, "data display toolsbar", &WindowSettings::DataDisplayToolbar},
    {kExpandButton, "Expand Button", &WindowSettings::ExpandButton},
    {kTabWorkspace, "TabWorkspace", &WindowSettings::TabWorkspace},
    {kBigIcon, "Big Icon", &WindowSettings::BigIcon},
    {kStatusBar, "status toolsbar", &WindowSettings::StatusToolbar},
};

}  // namespace

std::span<const ViewFlag> ViewFlags() {
  return kViewFlags;
}

const ViewFlag* ViewFlagOf(int command) {
  for (const ViewFlag& flag : kViewFlags) {
    if (flag.Command == command) return &flag;
  }
  return nullptr;
}

}  // namespace spectrane
