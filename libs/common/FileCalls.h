// FileCalls: what a file written aside asks of the system. The results are the system's error
// numbers (errno), 0 for success.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>

namespace common::files {

enum class Readers { Usual, OwnerAlone };

int processNumber();

/// Makes a file that must not be there, unbuffered; null on failure.
std::FILE* createNew(const std::filesystem::path& path, Readers readers, int& error);

int seekTo(std::FILE* file, uint64_t offset);

/// Gives `file` the mode, owner and access lists of the file `model`. What the system refuses to
/// one who is not the owner is left.
int dressLike(std::FILE* file, const std::filesystem::path& model);

/// Sees to it that the bytes written reach the disk before a later change of the file's name.
int settle(std::FILE* file);

/// `part` takes the place of what is at `target`, in one step. `keepsDress`: where the system
/// itself can hand the access lists of the replaced file on, it does.
int replace(const std::filesystem::path& part, const std::filesystem::path& target,
            bool keepsDress);

/// The same where nothing may be at `target`.
int moveToFreePlace(const std::filesystem::path& part, const std::filesystem::path& target);

} // namespace common::files
