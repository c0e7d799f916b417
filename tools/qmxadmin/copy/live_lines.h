// Lines on standard error. Printed lines stay. On a terminal, the lines below them are redrawn in place.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace qmx {

class LiveLines {
 public:
  using Clock = std::chrono::steady_clock;
  static constexpr std::chrono::milliseconds kBetweenDrawings{100};

  explicit LiveLines(bool quiet);  // draws nothing if quiet
  ~LiveLines() { Clear(); }
  LiveLines(const LiveLines&) = delete;
  LiveLines& operator=(const LiveLines&) = delete;

  bool AreDrawn() const { return isLive_; }  // if false, only printed lines appear

  void Print(const std::string& line);

  // Replaces the lines drawn before. Does nothing if they are the same, or if the last drawing is less than 100 ms ago.
  void Draw(const std::vector<std::string>& lines, Clock::time_point now = Clock::now());

 private:
  void Clear();
  std::string ClearText(int terminalWidth) const;

  bool isLive_;
  std::vector<std::string> drawn_;  // as they are on the terminal
  int drawnWidth_ = 0;
  Clock::time_point drawnAt_{};
};

}  // namespace qmx
