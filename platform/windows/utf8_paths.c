// Lets std::filesystem::path take the program's texts, which are UTF-8.
//
// libstdc++ 12 makes a path of a narrow text by std::codecvt<wchar_t, char>, which takes each byte for a character. The
// other way it writes UTF-8. The linker puts this function in the place of that conversion (cmake/windows.cmake).
#include <windows.h>

enum { kOk = 0 };  // std::codecvt_base::ok

// What is not UTF-8 becomes U+FFFD, with which there is no file. There is room: no character needs more units of UTF-16
// than bytes.
int __wrap__ZNKSt7codecvtIwciE5do_inERiPKcS3_RS3_PwS5_RS5_(const void* self, int* state, const char* from,
                                                           const char* fromEnd, const char** fromNext, wchar_t* to,
                                                           wchar_t* toEnd, wchar_t** toNext) {
  (void)self;
  (void)state;
  const int length =
      from == fromEnd ? 0 : MultiByteToWideChar(CP_UTF8, 0, from, (int)(fromEnd - from), to, (int)(toEnd - to));
  *fromNext = fromEnd;
  *toNext = to + length;
  return kOk;
}
