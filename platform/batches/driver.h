// A driver around another one that sends added rows together: one statement for many rows.
//
// A row that may wait (DriverStatement::MayWait) does so only while rows follow each other quickly; the first one after
// a pause goes out at once. What waits is sent before the session does anything else, when there is enough of it, and
// 50 ms after the first row at the latest, also while nobody calls. So no lock is ever held while waiting. A helper
// thread of the session sends full and due batches while the program fills the next one; there are two batches.
//
// Nothing of this shows but the speed. When a batch is refused it is sent again row by row: the rows before the bad one
// are saved, the bad one and those after it are not, and the error has the bad row's key. It is raised by the session's
// next call.
#pragma once

#include "platform/database_driver.h"

namespace qmx {

class BatchingDriver : public Driver {
 public:
  explicit BatchingDriver(Driver& inner) : inner_(inner) {}  // borrowed
  std::string Form() const override { return inner_.Form(); }
  bool Serves(const ConnectionText& text) const override { return inner_.Serves(text); }
  std::unique_ptr<DriverSession> Open(const ConnectionText& text) override;

 private:
  Driver& inner_;
};

}  // namespace qmx
