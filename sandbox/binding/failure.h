// The error that a component returns to its host: a number, a source, and a sentence that says what failed, where, and
// what to do. The only exception that this code throws on purpose.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

#include "qmx/component_server.h"

namespace orvan {

// Numbers that the public header does not name.
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kFileUnusable = 75;

class Failure : public std::exception {
 public:
  Failure(std::int32_t number, std::string source, std::string description)
      : number_(number), source_(std::move(source)), description_(std::move(description)) {}

  std::int32_t Number() const { return number_; }
  const std::string& Source() const { return source_; }
  const std::string& Description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string source_;
  std::string description_;
};

}  // namespace orvan
