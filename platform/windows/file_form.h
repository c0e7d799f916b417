// Whether a file of Windows stands for another one.
#pragma once

#include <windows.h>

namespace qmx {

enum class FileForm {
  Plain,
  Link,      // stands for what its target names
  Filtered,  // has its content elsewhere, such as a deduplicated file or one of a cloud, and is opened like any other
};

// The values are those of FILE_ATTRIBUTE_TAG_INFO.
constexpr FileForm FormOf(DWORD attributes, DWORD tag) {
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return FileForm::Plain;
  return IsReparseTagNameSurrogate(tag) ? FileForm::Link : FileForm::Filtered;
}

}  // namespace qmx
