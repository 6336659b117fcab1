#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "files/filefault.h"

namespace spectrane {

/// What file numbers ask of the platform. Fuzzing puts memory in the place of this file's source.

/// Why a path is no file to open; None for a regular file.
FileFault RefusalOfExisting(const std::filesystem::path& path);
/// Opens a file for reading, and for writing too when its rights allow it. Never blocks on a pipe. Null:
/// errno says why.
std::FILE* OpenExistingFile(const std::filesystem::path& path);
bool SeekTo(std::FILE* file, std::int64_t offset);
/// Reads from where the file stands; gives the number of bytes that came. `failed`: not for the file's end;
/// errno says why.
std::size_t ReadHere(std::FILE* file, void* bytes, std::size_t size, bool& failed);
/// [bytes]
std::int64_t PlatformFileLength(std::FILE* file);
/// False: errno says why. The file is closed all the same.
bool CloseStream(std::FILE* file);

/// The platform's words for an error number, and a fault without words.
FileFault PlatformFault(int code);
FileFault SimpleFault(FileError error);

}  // namespace spectrane
