#include "date_place.h"

#include <utility>
#include <vector>

namespace java_bridge {
namespace {

// Never destroyed: objects may be released while the process ends.
std::vector<jint>& freePlaces = *new std::vector<jint>;
jint places = 0;

jint Take() {
  if (freePlaces.empty()) {
    freePlaces.reserve(static_cast<std::size_t>(places) + 1);  // a release then needs no memory
    return places++;
  }
  const jint number = freePlaces.back();
  freePlaces.pop_back();
  return number;
}

}  // namespace

DatePlace::DatePlace() : number_(Take()) {}
DatePlace::DatePlace(DatePlace&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

DatePlace::~DatePlace() {
  if (number_ >= 0) freePlaces.push_back(number_);
}

}  // namespace java_bridge
