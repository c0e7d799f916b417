#include "platform/prepared_statements.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/error.h"

namespace qmx {
namespace {

// The kinds count too: a system may settle its parameters' types when it prepares.
bool IsSame(const StatementShape& one, const StatementShape& other) {
  return one.text == other.text &&
         std::equal(one.values.begin(), one.values.end(), other.values.begin(), other.values.end(),
                    [](const Variant& a, const Variant& b) { return a.GetKind() == b.GetKind(); });
}

// Whether the database did nothing because of what the statement says. Anything else (a time-out, a broken rule, a lost
// connection) the text as it stands would have met as well.
bool IsRefusal(const Error& error) {
  constexpr std::array kRefusals = {errors::kCommand, errors::kTypeMismatch, errors::kOverflow, errors::kNoSuchTable};
  return std::find(kRefusals.begin(), kRefusals.end(), error.Number()) != kRefusals.end();
}

}  // namespace

PreparedStatements::PreparedStatements(DriverSession& session) : session_(session) { kept_.reserve(kMostKept); }

std::unique_ptr<DriverStatement> PreparedStatements::Take(const StatementShape& shape) {
  const auto found =
      std::find_if(kept_.begin(), kept_.end(), [&](const Kept& candidate) { return IsSame(candidate.shape, shape); });
  if (found == kept_.end()) return session_.Prepare(shape.text);
  std::unique_ptr<DriverStatement> statement = std::move(found->statement);
  kept_.erase(found);
  return statement;
}

void PreparedStatements::Keep(StatementShape shape, std::unique_ptr<DriverStatement> statement) noexcept {
  statement->Reset();
  if (kept_.size() == kMostKept) kept_.erase(kept_.begin());
  kept_.push_back({std::move(shape), std::move(statement)});
}

template <typename Use>
decltype(auto) TextStatement::OrAsItStands(Use&& use) {
  try {
    return use();
  } catch (const Error& error) {
    const bool wasShared = std::exchange(isShared_, false);
    if (!wasShared || hasRow_ || !IsRefusal(error)) throw;
  }
  statement_.reset();  // on a server it may still be in the way
  statement_ = prepared_.session_.Prepare(text_);
  return use();
}

TextStatement::TextStatement(PreparedStatements& prepared, const std::string& text) : prepared_(prepared), text_(text) {
  std::optional<StatementShape> shape = ShapeOf(text, prepared_.session_.IntegerParameter());
  if (!shape) {
    statement_ = prepared_.session_.Prepare(text_);
    return;
  }
  shape_ = std::move(*shape);
  isShared_ = true;
  OrAsItStands([&] {
    if (!isShared_) return;
    statement_ = prepared_.Take(shape_);
    for (std::size_t parameter = 0; parameter < shape_.values.size(); ++parameter) {
      statement_->Bind(parameter, shape_.values[parameter]);
    }
  });
}

TextStatement::~TextStatement() {
  if (isShared_) prepared_.Keep(std::move(shape_), std::move(statement_));
}

const std::vector<ColumnDescription>& TextStatement::Columns() {
  return OrAsItStands([&]() -> const std::vector<ColumnDescription>& { return statement_->Columns(); });
}

bool TextStatement::Step() {
  return hasRow_ = OrAsItStands([&] { return statement_->Step(); });
}

}  // namespace qmx
