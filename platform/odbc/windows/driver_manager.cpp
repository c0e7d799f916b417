#include "platform/odbc/driver_manager.h"

#include <windows.h>

#include <filesystem>

#include "platform/odbc/unicode.h"

namespace qmx {

const bool kNarrowTextsAreUnchanged = false;

// Such a file has the form of Windows' ini files. (Wine lacks SQLReadFileDSNW.)
std::string ReadDataSourceFile(const std::string& file) {
  const std::filesystem::path path = std::filesystem::absolute(file);  // others are looked for in Windows' folder
  WideText lines(16 * 1024, L'\0');
  lines.resize(GetPrivateProfileSectionW(L"ODBC", lines.data(), static_cast<DWORD>(lines.size()), path.c_str()));
  std::string pairs;
  for (std::size_t at = 0; at < lines.size();) {
    const std::wstring_view line = lines.c_str() + at;
    at += line.size() + 1;
    if (line.empty() || line.front() == L'#' || line.find(L'=') == line.npos) continue;
    pairs += (pairs.empty() ? "" : ";") + FromWide(line);
  }
  return pairs;
}

}  // namespace qmx
