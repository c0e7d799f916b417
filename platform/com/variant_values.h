// Converts values between the program's Variant and COM's VARIANT.
//
// To the program: a whole number becomes the smallest of the program's kinds that holds every value of its type. One of
// a larger type becomes a 32-bit integer if it fits, else a double if that keeps each digit, else a text. DECIMAL and
// currency become exact texts. A missing argument is empty. A reference gives the value that it refers to. Error 13:
// arrays, unknown types, error values, an object without IDispatch, and a text that is no UTF-16 or holds a NUL. Error
// 6: a date-time outside the years 100 to 9999.
//
// To COM: each kind has one type. An object is its IDispatch, no object a null one.
#pragma once

#include <oaidl.h>
#include <oleauto.h>

#include "platform/variant.h"

namespace qmx {

// A VARIANT that clears itself. COM writes into it.
class OwnedVariant {
 public:
  OwnedVariant() { VariantInit(&value_); }
  ~OwnedVariant() { VariantClear(&value_); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;

  VARIANT* Get() { return &value_; }
  VARIANT Detach() {  // the caller clears it
    const VARIANT value = value_;
    VariantInit(&value_);
    return value;
  }
  const VARIANT& Value() const { return value_; }

 private:
  VARIANT value_;
};

// Copies texts, and adds references to objects.
Variant FromVariant(const VARIANT& value);

// Stores a value that the receiver clears. `out` must hold nothing that needs clearing; it keeps its value when an
// error is raised.
void ToVariant(const Variant& value, VARIANT& out);

}  // namespace qmx
