// The trace: one JSON object per line for every call on components and on the local database, in the order of the
// calls.
//
// It is what an integrator reads when a bridge misbehaves. Lines are appended to a file, each handed to the system
// before the next call begins, so that a crash leaves them readable. A file that cannot be opened is an error at the
// start; one that cannot be written later ends the trace with a line on standard error, never the run.
//
// Values are JSON values; a date-time is {"date": "2026-11-20 14:05:09"}, an object {"object": 4}, no object
// {"object": null}, null null, empty {}; an argument by reference is {"ref": value} as it was passed in. What is no
// UTF-8 shows as U+FFFD. A failed call has "error" in place of its result.
#pragma once

#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "platform/plain_file.h"

namespace qmx {

class Error;
class Variant;

class Trace {
 public:
  explicit Trace(const std::string& path);  // raises 75, with the file and the system's reason

  // The trace that $QMX_TRACE names; null where it is not set or empty.
  static std::unique_ptr<Trace> FromEnvironment();

  void Write(const nlohmann::ordered_json& line) noexcept;

 private:
  std::string path_;
  PlainFile file_;
};

nlohmann::ordered_json TraceValue(const Variant& value);
nlohmann::ordered_json TraceError(const Error& error);

}  // namespace qmx
