#include "platform/batches/group.h"

#include <utility>

#include "platform/error.h"
#include "platform/execution.h"
#include "platform/join.h"
#include "platform/value_text.h"

namespace qmx {

std::int64_t Executed(DriverStatement& statement, std::span<const Variant* const> values) {
  Execution execution(statement);
  for (std::size_t parameter = 0; parameter < values.size(); ++parameter) {
    statement.Bind(parameter, *values[parameter]);
  }
  return execution.Run();
}

bool Group::MayOpen() { return isAllowed_ && !isWithinOwn_ && Limits().statements > 0; }

const GroupLimits& Group::Limits() {
  if (!limits_) limits_ = retries_.Run([&] { return inner_.Grouping(); });
  return *limits_;
}

std::int64_t Group::Write(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values) {
  if (isWithinOwn_) return Executed(statement, values);  // only the owner can try its transaction again
  return retries_.Run([&] {
    if (MayOpen()) return Run(statement, text, values);
    Commit();  // an open group that could not be committed before
    return Executed(statement, values);
  });
}

std::int64_t Group::Run(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values) {
  if (!IsOpen()) Open();
  Keep(text, values);  // first: without memory for it the statement is not executed
  std::optional<std::int64_t> affected;
  try {
    affected = Executed(statement, values);
  } catch (const Error& error) {
    --count_;
    Redo();
    if (error.Number() == errors::kTimeout || AsksToTryAgain(error)) throw;  // it would take as long again
  } catch (...) {
    --count_;
    Redo();
    throw;
  }
  if (!affected) return Executed(statement, values);
  if (count_ == Limits().statements) Commit();
  return *affected;
}

void Group::Open() {
  state_.RequireKnown();
  const GroupLimits& limits = Limits();
  inner_.Begin();
  state_.Opened();
  due_ = clock_.Now() + limits.time;
}

void Group::Commit() {
  state_.RequireKnown();
  if (!IsOpen()) return;
  try {
    inner_.Commit();
  } catch (...) {  // the statement that caused the refusal raises it again
    Redo();
    return;
  }
  state_.Ended();
  count_ = 0;
}

void Group::Keep(const std::string& text, std::span<const Variant* const> values) {
  if (written_.size() == count_) written_.emplace_back();
  Written& written = written_[count_];
  written.text = text;
  written.values.resize(values.size());
  for (std::size_t parameter = 0; parameter < values.size(); ++parameter) {
    written.values[parameter] = *values[parameter];
  }
  ++count_;
}

void Group::Redo() {
  if (!IsOpen()) return;
  retries_.CountIfAsked(CurrentError());
  RollBack();
  state_.Ended();
  const std::span again = std::span(written_).first(std::exchange(count_, 0));
  for (const Written& written : again) {
    try {
      retries_.Run([&] { ExecuteAgain(written); });
    } catch (Error& error) {
      error.With("statement", written.text)
          .With("key", "of the row written with " + Joined(written.values, ", ", ValueText));
      throw;
    }
  }
}

void Group::ExecuteAgain(const Written& written) {
  const std::unique_ptr<DriverStatement> statement = inner_.Prepare(written.text);
  for (std::size_t parameter = 0; parameter < written.values.size(); ++parameter) {
    statement->Bind(parameter, written.values[parameter]);
  }
  Execution(*statement).Run();
}

void Group::RollBack() {
  try {
    retries_.Run([&] { inner_.Rollback(); });
  } catch (...) {
    state_.Lose();
    throw;
  }
}

void Group::BeginOwn() {
  retries_.Run([&] { inner_.Begin(); });
  isWithinOwn_ = true;
}

void Group::CommitOwn() {
  if (isAllowed_ && !isWithinOwn_) return;
  Commit();  // none is open, but a lost one raises
  if (std::exchange(isWithinOwn_, false)) return inner_.Commit();
  retries_.Run([&] { inner_.Commit(); });  // nothing is open in the database either
}

void Group::RollbackOwn() {
  isWithinOwn_ = false;
  RollBack();
}

}  // namespace qmx
