// Random numbers that are the same on every machine. The standard library's distributions are not.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvan {

class Random {
 public:
  // Each purpose has its own numbers, so making more of one thing does not change the others.
  Random(std::uint64_t seed, std::string_view purpose) : state_(seed) {
    for (const char c : purpose) state_ = (state_ ^ static_cast<unsigned char>(c)) * 0x100000001b3u;
    Next();
  }

  std::uint64_t Next() {  // splitmix64
    state_ += 0x9e3779b97f4a7c15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebu;
    return mixed ^ (mixed >> 31);
  }

  // Includes both ends.
  int Between(int low, int high) { return low + static_cast<int>(Next() % static_cast<std::uint64_t>(high - low + 1)); }
  bool Chance(int percent) { return Between(1, 100) <= percent; }

  template <class List>
  const auto& Pick(const List& list) {
    return list[static_cast<std::size_t>(Next() % std::size(list))];
  }

 private:
  std::uint64_t state_;
};

}  // namespace orvan
