#include "erp/date.h"

namespace orvan {

Moment ReadDate(const ForeignObject& date) {
  const auto get = [&](const char* part) { return date.CallForInteger(part); };
  return {get("getYear") + 1900, get("getMonth") + 1, get("getDate"),
          get("getHours"),       get("getMinutes"),   get("getSeconds")};
}

}  // namespace orvan
