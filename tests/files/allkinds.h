#pragma once

#include <string_view>
#include <vector>

#include "files/basicfile.h"
#include "files/bslfile.h"
#include "files/dnafile.h"
#include "files/multifile.h"
#include "files/quafile.h"
#include "files/tsfile.h"
#include "files/wlsfile.h"
#include "files/wlsfile2.h"

namespace spectrane {

inline std::vector<const FileKind*> AllFileKinds() {
  return {&QuaModule(), &TSModule(),  &WLSModule(),   &MultiModule(),
          &DNAModule(), &BSLModule(), &BasicModule(), &WLS2Module()};
}

/// The ending of a kind's files without the point; two kinds share one.
inline std::string_view EndingOf(const FileKind& kind) {
  const std::string_view name = kind.Name;
  return name == "wls2" ? "wls" : name;
}

}  // namespace spectrane
