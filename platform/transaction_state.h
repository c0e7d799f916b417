// Whether a database session has an open transaction, according to the database's answers.
//
// A session whose state is unknown stays unknown: what it wrote may be saved or not, so no later write is reliable.
// Every further call on the session raises.
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

  // Makes the state unknown, because of the exception that is being handled.
  void Lose() noexcept;

  void RequireKnown() const;                          // raises the error that made the state unknown
  void RequireNone(const std::string& action) const;  // also raises 3219 if a transaction is open

 private:
  enum class State { None, Open, Unknown };
  void Become(State state) {
    if (state_ != State::Unknown) state_ = state;
  }

  State state_ = State::None;
  std::optional<Error> loss_;  // empty if there was no memory for it
};

}  // namespace qmx
