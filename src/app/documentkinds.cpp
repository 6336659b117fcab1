#include "app/documentkinds.h"

#include "app/ground/commands.h"
#include "modes/windows/frmbasic.h"
#include "modes/windows/frmdna.h"
#include "modes/windows/frmmulti.h"
#include "modes/windows/frmqua.h"
#include "modes/windows/frmts.h"
#include "spectrum/windows/frmwls.h"
#include "spectrum/windows/frmwlsver2.h"

namespace spectrane {
namespace {

template <typename Window>
DocumentWindow* Make(MainWindow& frame) {
  return new Window(frame);
}

const DocumentKind kKinds[] = {
    {kQuantitationFile, 1, kNewQua, 104, "FrmQua", &Make<FrmQua>},
    {kKineticsFile, 2, kNewTS, 105, "FrmTS", &Make<FrmTS>},
    {kScanFile, 3, kNewWLS, 106, "FrmWLS", &Make<FrmWLS>},
    {kMultiFile, 4, kNewMulti, 107, "FrmMulti", &Make<FrmMulti>},
    {kDNAFile, 5, kNewDNA, 108, "FrmDNA", &Make<FrmDNA>},
    {kPhotometryFile, 11, kNewBasic, 121, "FrmBasic", &Make<FrmBasic>},
    {0, 12, 0, 0, "FrmWLSVer2", &Make<FrmWLSVer2>},
};

}  // namespace

std::span<const DocumentKind> DocumentKinds() {
  return kKinds;
}

const DocumentKind* KindOfNewFile(int newFileType) {
  for (const DocumentKind& kind : kKinds) {
    if (kind.NewFileType == newFileType && newFileType != 0) return &kind;
  }
  return nullptr;
}

const DocumentKind* KindOfHeader(std::int32_t headerType) {
  for (const DocumentKind& kind : kKinds) {
    if (kind.HeaderType == headerType) return &kind;
  }
  return nullptr;
}

}  // namespace spectrane
