// What a copy log tells of the run that has just ended.
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

// One table's copy log, from where it ended when this object was made.
class CopyLog {
 public:
  CopyLog(const std::string& logDirectory, const std::string& tableCode);  // as a copy is given them

  // Nothing where no counts have been added to it since.
  std::optional<CopyCounts> NewCounts() const;

 private:
  std::string path_;
  std::uintmax_t start_ = 0;
};

}  // namespace qmx
