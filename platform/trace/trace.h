// The trace: one JSON object per line for every call on components and on the local database, in the order of the
// calls.
//
// Integrators read it when a bridge misbehaves. Each line is appended to the file before the next call begins, so that
// a crash leaves the lines readable. A file that cannot be opened is an error at the start. If a later write fails, the
// trace ends with a line on standard error, and the run continues.
//
// Values are JSON values; a date-time is {"date": "2026-11-20 14:05:09"}, an object {"object": 4}, no object
// {"object": null}, null null, empty {}; an argument by reference is {"ref": value} with the value before the call.
// NUL and invalid UTF-8 become U+FFFD. A failed call has "error" in place of its result.
#pragma once

#include <memory>
#include <string>

#include "platform/json_line.h"
#include "platform/system/plain_file.h"

namespace qmx {

class Error;
class Variant;

class Trace {
 public:
  explicit Trace(const std::string& path);  // raises 75, with the file and the system's reason

  // Returns the trace that $QMX_TRACE names; null if it is not set or empty.
  static std::unique_ptr<Trace> FromEnvironment();

  void Write(const JsonLine& line) noexcept;

 private:
  std::string path_;
  PlainFile file_;
};

std::string TraceValue(const Variant& value);  // JSON
JsonLine TraceError(const Error& error);

}  // namespace qmx
