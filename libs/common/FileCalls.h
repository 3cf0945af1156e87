// FileCalls: what a file written aside asks of the system. The results are the system's error
// numbers (errno), 0 for success.
#pragma once

#include "common/FileIdentity.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace common::files {

enum class Readers { Usual, OwnerAlone };

/// Makes the file at `path`, to be written and read, unbuffered, and locks it until it is closed,
/// so that every other process knows it to be in use. What a process that is gone has left there is
/// removed first; nothing there is followed or written to. Null on failure: `error` is EBUSY when
/// what is there is in use, or may be.
std::FILE* createLocked(const std::filesystem::path& path, Readers readers, int& error);

/// Removes what createLocked() made in a process that is gone, or a link under that name. EBUSY
/// when it is in use, or where the system cannot tell whether it is.
int removeUnused(const std::filesystem::path& path);

/// Opens an ordinary file for reading, unbuffered. Null on failure; `error` is 0 when something is
/// there that is no ordinary file.
std::FILE* openToRead(const std::filesystem::path& path, Links links, int& error);

int seekTo(std::FILE* file, uint64_t offset);

/// Gives `file` the mode, owner and access lists of the file `model`, which is no link. What the
/// system refuses to one who is not the owner is left.
int dressLike(std::FILE* file, const std::filesystem::path& model);

/// The bytes written begin to reach the disk, where the system can be told so. Nobody waits.
void beginToSettle(std::FILE* file);

/// Sees to it that the bytes written reach the disk before a later change of the file's name.
int settle(std::FILE* file);

/// Errors that some systems keep until a file is closed; it stays open, and locked.
int tellLateErrors(std::FILE* file);

/// What may happen to the file that is at the target.
enum class Old {
  None, ///< there must be none
  Replaced,
  HandsOn ///< replaced; where the system itself hands on its access lists, it does
};

/// Puts `file`, which is at `part`, at `target` in one step and closes it: it is locked until it is
/// there. On failure it may be left open; what is closed is null.
int moveAndClose(std::FILE*& file, const std::filesystem::path& part,
                 const std::filesystem::path& target, Old old);

} // namespace common::files
