#include "app/desktop/associations.h"

#include "base/language.h"

namespace spectrane {
namespace {

constexpr FileAssociation kAssociations[] = {
    {".tis", "TIS_File", 5, 980, "application/x-spectrane-tis", {2, 0}},
    {".wls", "WLS_File", 7, 928, "application/x-spectrane-wls", {3, 12}},
    {".qua", "QUA_File", 4, 1047, "application/x-spectrane-qua", {1, 0}},
    {".mul", "MUL_File", 1, 1014, "application/x-spectrane-mul", {4, 0}},
    {".dna", "DNA_File", 0, 1027, "application/x-spectrane-dna", {5, 0}},
    {".bas", "BAS_File", 3, 1193, "application/x-spectrane-bas", {11, 0}},
    {".bsl", "BSL_File", 8, 920, "application/x-spectrane-bsl", {6, 0}},
};

}  // namespace

std::span<const FileAssociation> FileAssociations() {
  return kAssociations;
}

std::string DescriptionOf(const FileAssociation& association) {
  const std::string filter = Text(association.FilterTextId);
  return filter.substr(0, filter.find('('));
}

}  // namespace spectrane
