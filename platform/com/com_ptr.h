// A counted reference to a COM interface, or to none.
#pragma once

#include <utility>

namespace qmx {

template <typename Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(const ComPtr& other) : pointer_(other.pointer_) {
    if (pointer_) pointer_->AddRef();
  }
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_) pointer_->Release();
  }

  // Takes over the caller's reference.
  static ComPtr Owning(Interface* pointer) {
    ComPtr owning;
    owning.pointer_ = pointer;
    return owning;
  }

  // Adds a reference.
  static ComPtr Sharing(Interface* pointer) {
    if (pointer) pointer->AddRef();
    return Owning(pointer);
  }

  // Where a function stores a new reference. For pointers that are null.
  Interface** Receiver() { return &pointer_; }
  void** UntypedReceiver() { return reinterpret_cast<void**>(&pointer_); }

  Interface* Get() const { return pointer_; }
  Interface* Detach() { return std::exchange(pointer_, nullptr); }  // the caller takes over the reference
  Interface* operator->() const { return pointer_; }
  Interface& operator*() const { return *pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

 private:
  Interface* pointer_ = nullptr;
};

}  // namespace qmx
