// Database files that the program may read but not write, and why SQLite may refuse them.
//
// SQLite reads a file in WAL mode through two files beside it, "-wal" and "-shm", and creates them if they are missing.
// Created by a user who only reads, they would remain, and the copies could not write them. They exist while any
// program has the database open for writing. The option "immutable" is never used, because a copy may write the file
// meanwhile.
#pragma once

#include <filesystem>

#include "platform/error.h"

namespace qmx {

// Returns error 70 for a file that a program must write.
Error ReadOnlyError(const std::filesystem::path& file);

// Raises 70 if SQLite would have to create files to read this one, or if those files may not be read.
void RequireReadableWithoutWriting(const std::filesystem::path& file);

// Returns error 70 for a file whose rollback journal holds an unfinished transaction, which only a writer can undo.
Error UnfinishedTransactionError(const std::filesystem::path& file);

}  // namespace qmx
