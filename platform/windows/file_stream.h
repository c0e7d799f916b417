// A stream over an open file.
#pragma once

#include <cstdio>

#include "platform/windows/handle.h"

namespace qmx {

// Takes the file over. Returns null, with the reason in errno, if there is no free descriptor or stream.
std::FILE* StreamOver(Handle& file, const char* mode);

}  // namespace qmx
