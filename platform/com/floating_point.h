// The settings of the floating-point unit, which a component must not change for the program.
//
// Some runtime libraries unmask its exceptions when a component is loaded (Delphi's before version 12). The program's
// next division by zero, or its next inexact conversion, would then end it.
#pragma once

#include <immintrin.h>

#include <cstdint>

namespace qmx {

// Restores the settings when it is destroyed. Costs some nanoseconds if they are as they were.
class FloatingPointKept {
 public:
  FloatingPointKept() : vectors_(_mm_getcsr()), word_(ControlWord()) {}
  ~FloatingPointKept() {
    const unsigned now = _mm_getcsr();
    if (((now ^ vectors_) & kSettings) != 0 || ControlWord() != word_) [[unlikely]]
      Restore();
  }
  FloatingPointKept(const FloatingPointKept&) = delete;
  FloatingPointKept& operator=(const FloatingPointKept&) = delete;

 private:
  static constexpr unsigned kSettings = 0xFFC0;  // the other bits of MXCSR tell what happened

  static std::uint16_t ControlWord() {
    std::uint16_t word = 0;
    asm volatile("fnstcw %0" : "=m"(word));
    return word;
  }

  // Exceptions that wait are cleared, because loading the word would raise them.
  void Restore() const {
    _mm_setcsr(vectors_);
    asm volatile("fnclex\n\tfldcw %0" : : "m"(word_));
  }

  const unsigned vectors_;
  const std::uint16_t word_;
};

}  // namespace qmx
