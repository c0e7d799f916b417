#include "platform/com/error_text.h"

#include <oaidl.h>
#include <oleauto.h>

#include "platform/com/bstr.h"
#include "platform/com/com_ptr.h"

namespace qmx {

void ForgetErrorText() { SetErrorInfo(0, nullptr); }

std::string TakeErrorText() {
  ComPtr<IErrorInfo> information;
  GetErrorInfo(0, information.Receiver());  // null if there is none
  OwnedBstr text;
  if (information) information->GetDescription(text.Receiver());
  return Utf8WithReplacements(text.View());
}

}  // namespace qmx
