#include "platform/system/access.h"

#include "platform/windows/handle.h"
#include "platform/windows/system_codes.h"
#include "platform/windows/wide_text.h"

namespace qmx {
namespace {

// The access list alone does not say what Windows would permit, so the file is opened. It is shared with everybody.
int OpeningProblem(const std::string& nativePath, DWORD access, DWORD flags) {
  const Handle file(CreateFileW(WideText(nativePath).c_str(), access,
                                FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, flags,
                                nullptr));
  return file ? 0 : LastErrno();
}

}  // namespace

int AccessProblem(const std::string& nativePath, FileRight right) {
  return OpeningProblem(nativePath, right == FileRight::Read ? GENERIC_READ : GENERIC_WRITE, FILE_ATTRIBUTE_NORMAL);
}

int FolderAccessProblem(const std::string& nativePath) {
  return OpeningProblem(nativePath, FILE_ADD_FILE, FILE_FLAG_BACKUP_SEMANTICS);
}

}  // namespace qmx
