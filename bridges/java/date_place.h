// A place in Java's array of dates (Dates.java), free again at the end.
#pragma once

#include <jni.h>

namespace java_bridge {

class DatePlace {
 public:
  DatePlace();
  ~DatePlace();
  DatePlace(DatePlace&& other) noexcept;
  DatePlace& operator=(DatePlace&&) = delete;

  jint Number() const { return number_; }

 private:
  jint number_;  // -1 after a move
};

}  // namespace java_bridge
