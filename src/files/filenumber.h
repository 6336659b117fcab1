#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "files/filefault.h"

namespace spectrane {

/// Open files behind small numbers, read and written in large blocks. One thread. Offsets count from 0 in 64
/// bits. Writing reports nothing at once: the first fault stays with the number, past its close, until the
/// number is used for another file; whoever saves asks FaultOf() after CloseFileNumber().

/// The smallest number, from 1, under which no file is open. It clears what a former file left behind and
/// stays free until a file is opened under it.
int FreeFileNumber();

/// Opens a file that does not exist yet for reading and writing. False: the path was taken or the platform
/// refused; nothing is open under the number. `ownerOnly`: nobody else may read it, where the platform has
/// permission bits.
bool CreateBinaryFile(const std::string& path, int fileNumber, bool ownerOnly = false);
/// Opens an existing regular file, for writing too when its rights allow it. Never blocks on a pipe. False:
/// nothing is open under the number.
bool OpenBinaryFile(const std::string& path, int fileNumber);
/// Writes out what is waiting and closes; a number without an open file is left alone.
void CloseFileNumber(int fileNumber);
bool IsOpenFileNumber(int fileNumber);

/// Length of the open file [bytes], what waits to be written included; 0 without an open file.
std::int64_t FileLength(int fileNumber);

/// Largest piece that ViewBytes() and PlaceBytes() serve [bytes].
inline constexpr std::size_t kLargestPiece = 65536;

/// The `size` bytes at `offset`, valid until the next call with this number. Null when they do not lie wholly
/// inside the file or could not be read.
const unsigned char* ViewBytes(int fileNumber, std::int64_t offset, std::size_t size);
/// Room for `size` bytes that will stand at `offset`; the caller fills all of them at once. Null, and a fault
/// under the number, when no file is open or `offset` is negative.
unsigned char* PlaceBytes(int fileNumber, std::int64_t offset, std::size_t size);

/// The first fault under the number since FreeFileNumber() gave it.
FileFault FaultOf(int fileNumber);
/// Keeps `fault` unless there is an earlier one.
void NoteFault(int fileNumber, FileFault fault);
/// A text written under the number had characters without a place and got "?" in their stead.
bool TextLost(int fileNumber);
void NoteTextLost(int fileNumber);

}  // namespace spectrane
