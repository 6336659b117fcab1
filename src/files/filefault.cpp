#include "files/filefault.h"

namespace spectrane {
namespace {

std::string DamageWords(const FileFault& fault) {
  if (fault.Stated < 0) return "damaged: states a number of records that makes no sense";
  if (fault.Stated > fault.Held) {
    return "damaged: has " + std::to_string(fault.Held) + " of the " + std::to_string(fault.Stated) +
           " records that it states";
  }
  return "damaged: ends too early, at byte " + std::to_string(fault.Offset);
}

}  // namespace

std::string FaultWords(const FileFault& fault) {
  switch (fault.Error) {
    case FileError::None:
      return "no fault";
    case FileError::Missing:
      return "no such file";
    case FileError::Exists:
      return "exists already";
    case FileError::NotRegular:
      return "not a regular file";
    case FileError::Foreign:
      return "not a data file of this system";
    case FileError::WrongKind:
      return "not a data file of the kind that is wanted";
    case FileError::Damaged:
      return DamageWords(fault);
    case FileError::TooBig:
      return "states " + std::to_string(fault.Stated) + " records, more than the " +
             std::to_string(fault.Held) + " that can be taken";
    case FileError::InputOutput:
      return fault.Reason.empty() ? "input/output error" : fault.Reason;
    case FileError::NotSavable:
      return "nothing to save";
    case FileError::HalfRead:
      return "The file holds rows that could not be read; rows measured since can be saved under another "
             "name.";
  }
  return "unknown fault";
}

}  // namespace spectrane
