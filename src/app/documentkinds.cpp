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
    {kPhotometryFile, 11, kNewBasic, 121, "FrmBasic", &Make<FrmBasic>, "BasicOption", 1084},
    {kQuantitationFile, 1, kNewQua, 104, "FrmQua", &Make<FrmQua>, "QuaOption", 1085},
    {kKineticsFile, 2, kNewTS, 105, "FrmTS", &Make<FrmTS>, "TimeScanOption", 1086},
    {kScanFile, 3, kNewWLS, 106, "FrmWLS", &Make<FrmWLS>, "WaveLengthOption", 1087},
    {kMultiFile, 4, kNewMulti, 107, "FrmMulti", &Make<FrmMulti>, "MultiOption", 1088},
    {kDNAFile, 5, kNewDNA, 108, "FrmDNA", &Make<FrmDNA>, "DNAOption", 1089},
    {0, 12, 0, 0, "FrmWLSVer2", &Make<FrmWLSVer2>, nullptr, 0},
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
