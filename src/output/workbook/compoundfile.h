#pragma once

#include <string>
#include <string_view>

namespace spectrane {

/// A compound file (version 3, sectors of 512 bytes) with one stream of that name below its root. A stream
/// shorter than 4096 bytes is filled up with zeros to that length, so that no second, smaller kind of sector
/// is needed.
std::string CompoundFile(std::u16string_view streamName, std::string_view stream);

}  // namespace spectrane
