#include "platform/system/paths.h"

#include <algorithm>

namespace qmx {

// Path texts are Windows' own.
std::string NativePath(std::string_view path) { return std::string(path); }

std::string PathText(std::string_view nativePath) {
  std::string path(nativePath);
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

}  // namespace qmx
