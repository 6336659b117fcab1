#pragma once

#include <string>

namespace spectrane {

/// The name, without a folder, under which this process builds its temporary file of that number.
std::string TemporaryName(unsigned long number);

/// Removes from `folder` (empty: the current one) the temporary files that killed programs have left there:
/// those whose process is gone and that nobody has written to for ten minutes, which leaves out a save of
/// another computer on a shared disk. After a day the process number may have gone to another program and
/// does not count. What cannot be looked at or removed stays.
void RemoveLeftovers(const std::string& folder);
/// The same, the first time that a folder is named in this process.
void RemoveLeftoversOnce(const std::string& folder);

}  // namespace spectrane
