// Reads the counts of the latest run from a copy log.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qmx {

struct CopyCounts {
  std::int64_t added = 0;
  std::int64_t updated = 0;
  std::int64_t removed = 0;
};

// One table's copy log, from its end at the time of construction.
class CopyLog {
 public:
  CopyLog(const std::string& logDirectory, const std::string& tableCode);  // as on a copy's command line

  // Returns the counts written since then, or nothing.
  std::optional<CopyCounts> NewCounts() const;

 private:
  std::string path_;
  std::uintmax_t start_ = 0;
};

}  // namespace qmx
