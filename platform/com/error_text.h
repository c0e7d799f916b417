// What a component says of a failure beside its result: the error object that it leaves with the thread (IErrorInfo).
#pragma once

#include <string>

namespace qmx {

void ForgetErrorText();  // of an earlier failure

// Returns the description, and forgets it; empty if there is none.
std::string TakeErrorText();

}  // namespace qmx
