#include "platform/batches/group.h"

#include <utility>

#include "platform/error.h"
#include "platform/execution.h"
#include "platform/value_text.h"

namespace qmx {
namespace {

std::string Listed(const std::vector<Variant>& values) {
  std::string text;
  for (const Variant& value : values) text += (text.empty() ? "" : ", ") + ValueText(value);
  return text;
}

}  // namespace

std::int64_t Executed(DriverStatement& statement, std::span<const Variant* const> values) {
  Execution execution(statement);
  for (std::size_t parameter = 0; parameter < values.size(); ++parameter) {
    statement.Bind(parameter, *values[parameter]);
  }
  return execution.Run();
}

bool Group::IsPossible() {
  if (!limits_) limits_ = inner_.Grouping();
  return limits_->statements > 0;
}

std::int64_t Group::Run(DriverStatement& statement, const std::string& text, std::span<const Variant* const> values) {
  if (!isOpen_) {
    inner_.Begin();
    isOpen_ = true;
    due_ = Clock::now() + limits_->time;
  }
  std::optional<std::int64_t> affected;
  try {
    affected = Executed(statement, values);
  } catch (const Error& error) {
    Redo();
    if (error.Number() == errors::kTimeout) throw;  // it would take as long again
  }
  if (!affected) return Executed(statement, values);
  Keep(text, values);
  if (count_ == limits_->statements) Commit();
  return *affected;
}

void Group::Commit() {
  if (!isOpen_) return;
  try {
    inner_.Commit();
    isOpen_ = false;
    count_ = 0;
    return;
  } catch (const Error&) {  // what it was, one of the statements will meet again
  }
  Redo();
}

void Group::Keep(const std::string& text, std::span<const Variant* const> values) {
  if (written_.size() == count_) written_.emplace_back();
  Written& written = written_[count_++];
  written.text = text;
  written.values.resize(values.size());
  for (std::size_t parameter = 0; parameter < values.size(); ++parameter) {
    written.values[parameter] = *values[parameter];
  }
}

void Group::Redo() {
  if (!isOpen_) return;
  due_ = Clock::now() + limits_->time;  // to try again, where this fails
  inner_.Rollback();
  isOpen_ = false;
  const std::span again = std::span(written_).first(std::exchange(count_, 0));
  for (const Written& written : again) {
    try {
      const std::unique_ptr<DriverStatement> statement = inner_.Prepare(written.text);
      for (std::size_t parameter = 0; parameter < written.values.size(); ++parameter) {
        statement->Bind(parameter, written.values[parameter]);
      }
      Execution(*statement).Run();
    } catch (Error& error) {
      error.With("statement", written.text).With("key", "of the row written with " + Listed(written.values));
      throw;
    }
  }
}

}  // namespace qmx
