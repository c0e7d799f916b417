// Lines on standard error: some stay, and below them, on a terminal, some that are drawn over and over.
#pragma once

#include <string>
#include <vector>

namespace qmx {

class LiveLines {
 public:
  LiveLines();
  ~LiveLines() { Draw({}); }
  LiveLines(const LiveLines&) = delete;
  LiveLines& operator=(const LiveLines&) = delete;

  bool AreDrawn() const { return isLive_; }  // else only what stays is written

  void Say(const std::string& line);                 // stays
  void Draw(const std::vector<std::string>& lines);  // in place of those drawn before

 private:
  bool isLive_;
  std::size_t drawn_ = 0;
};

}  // namespace qmx
