// A driver that wraps another one and sends added rows in batches: one statement for many rows.
//
// A row that may wait (DriverStatement::MayWait) waits only while rows follow each other quickly; the first one after a
// pause is sent at once. Waiting rows are sent before the session does anything else, when there are enough of them,
// and 50 ms after the first of them at the latest, also while nobody calls. So no lock is ever held while waiting. The
// session's helper thread sends one batch while the program fills the other (RowQueue).
//
// The results are those of single rows. A refused batch is sent again row by row: the rows before the bad one are
// saved, the bad one and those after it are not, and the error has the bad row's key. The session's next call raises
// it. Of rows whose outcome nobody needs (RowInsert::isUnheeded) only the bad ones are not saved, and nothing is
// raised. They wait where statements may be committed together.
//
// What the database took back wholly and asks to try again is tried again (Retries), except within a transaction that
// the program began.
#pragma once

#include "platform/batches/retries.h"
#include "platform/database_driver.h"
#include "platform/steady_clock.h"

namespace qmx {

class BatchingDriver : public Driver {
 public:
  explicit BatchingDriver(Driver& inner, SteadyClock& clock = SteadyClock::OfTheSystem())  // borrowed
      : inner_(inner), clock_(clock) {}
  std::string Form() const override { return inner_.Form(); }
  bool Serves(const ConnectionText& text) const override { return inner_.Serves(text); }
  std::unique_ptr<DriverSession> Open(const ConnectionText& text) override;
  std::int64_t Retries() const { return retries_; }  // of all its sessions, and of attempts to open one

 private:
  Driver& inner_;
  SteadyClock& clock_;
  RetryCount retries_ = 0;
};

}  // namespace qmx
