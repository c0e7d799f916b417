// What the faulty libraries beneath a program count, in a file that they share with the test: the calls that were made,
// and those that were struck.
#pragma once

#include <cstring>
#include <string>

#include "tests/support/shared_count.h"
#include "tests/support/temp_folder.h"

namespace qmx::test::faults {

class CountedCalls {
 public:
  explicit CountedCalls(std::string file) : file_(std::move(file)) { Reset(); }

  void Reset() { WriteFile(file_, std::string(sizeof(SharedCount), '\0')); }

  const std::string& File() const { return file_; }
  long Made() const { return Read().made; }
  long Struck() const { return Read().struck; }

 private:
  SharedCount Read() const {
    SharedCount numbers{};
    const std::string bytes = ReadFile(file_);
    if (bytes.size() == sizeof numbers) std::memcpy(&numbers, bytes.data(), sizeof numbers);
    return numbers;
  }

  std::string file_;
};

}  // namespace qmx::test::faults
