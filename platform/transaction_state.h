// Whether a database session has a transaction open, as far as the database's answers tell.
//
// A session whose state is not known any more stays so: what it wrote may be saved or not, so nothing that it writes
// after that can be relied on. Every further call on it raises.
#pragma once

#include <optional>
#include <string>

#include "platform/error.h"

namespace qmx {

class TransactionState {
 public:
  bool IsOpen() const { return state_ == State::Open; }
  void Opened() { Become(State::Open); }
  void Ended() { Become(State::None); }

  // The state is unknown from here on, because of the exception that is being handled.
  void Lose() noexcept;

  void RequireKnown() const;                          // raises the error that made the state unknown
  void RequireNone(const std::string& action) const;  // also raises 3219 if a transaction is open

 private:
  enum class State { None, Open, Unknown };
  void Become(State state) {
    if (state_ != State::Unknown) state_ = state;
  }

  State state_ = State::None;
  std::optional<Error> loss_;  // none if there was no memory for it
};

}  // namespace qmx
