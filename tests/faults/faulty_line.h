// A line between the program and a server on which something happens at the Nth piece that the program sends.
#pragma once

#include <atomic>
#include <string>
#include <string_view>

#include "tests/faults/target_table.h"
#include "tests/support/tcp_proxy.h"

namespace qmx::test::faults {

class FaultyLine {
 public:
  // Counts only pieces that have `text` in them. What happens: "cut", "half-closed", "silent" (nothing arrives any
  // more), "unanswered" (only the server's answers do not arrive), "ended", "killed" or "stopped" (the program's
  // sessions, by the server). The table is borrowed.
  FaultyLine(TargetTable& table, std::string text, std::string what, long first)
      : table_(table), text_(std::move(text)), what_(std::move(what)), first_(first) {}

  std::string ConnectionText() const;  // over this line

  long Made() const { return made_; }
  long Struck() const { return made_ >= first_ && first_ > 0 ? 1 : 0; }

 private:
  TcpProxy::Fate Happens(std::string_view piece);

  TargetTable& table_;
  std::string text_, what_;
  long first_;
  std::atomic<long> made_ = 0;
  TcpProxy proxy_{ServerPort(), [this](std::string_view piece) { return Happens(piece); }};  // last: has a thread

  std::uint16_t ServerPort() const;
};

}  // namespace qmx::test::faults
