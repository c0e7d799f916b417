// Closes a handle of Windows.
#pragma once

#include <windows.h>

namespace qmx {

class Handle {
 public:
  explicit Handle(HANDLE handle) noexcept : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  ~Handle() {
    if (handle_) CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  explicit operator bool() const noexcept { return handle_ != nullptr; }
  HANDLE Get() const noexcept { return handle_; }
  void Release() noexcept { handle_ = nullptr; }

 private:
  HANDLE handle_;
};

}  // namespace qmx
