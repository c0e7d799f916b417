#include "platform/prepared_statements.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/error.h"
#include "platform/names.h"
#include "platform/sql_statement.h"

namespace qmx {
namespace {

// Whether the database refused the statement itself and did nothing. Any other error (a time-out, a broken rule, a lost
// connection) would also occur with the plain text.
bool IsRefusal(const Error& error) {
  constexpr std::array kRefusals = {errors::kCommand, errors::kTypeMismatch, errors::kOverflow, errors::kNoSuchTable};
  return std::find(kRefusals.begin(), kRefusals.end(), error.Number()) != kRefusals.end();
}

// How the statement inserts many rows whose outcome nobody needs. Nothing for any statement but "insert ... values
// (?,?)" with a parameter for each of the values.
std::optional<RowInsert> UnheededInsert(const std::string& form, std::size_t values) {
  RowInsert insert;
  insert.columns.resize(values);
  const std::string row = insert.Text();  // " values (?,?)", because it does not yet say into what
  if (!SameName(FirstWord(form), "insert") || form.size() < row.size()) return std::nullopt;
  const std::size_t end = form.size() - row.size();
  if (!SameName(std::string_view(form).substr(end), row)) return std::nullopt;
  insert.into = form.substr(0, end);
  insert.isUnheeded = true;
  return insert;
}

}  // namespace

PreparedStatements::PreparedStatements(DriverSession& session, UnitOfWork& unit) : session_(session), unit_(unit) {
  kept_.reserve(kMostKept);
}

std::unique_ptr<PreparedStatements::Prepared> PreparedStatements::Take(const SqlShape& shape) {
  const auto found =
      std::find_if(kept_.begin(), kept_.end(), [&](const auto& candidate) { return candidate->shape == shape; });
  if (found == kept_.end()) return nullptr;
  std::unique_ptr<Prepared> prepared = std::move(*found);
  kept_.erase(found);
  return prepared;
}

void PreparedStatements::Keep(std::unique_ptr<Prepared> prepared) noexcept {
  prepared->statement->Reset();
  if (kept_.size() == kMostKept) kept_.erase(kept_.begin());
  kept_.push_back(std::move(prepared));
}

void ConnectionStatement::Prepare(SqlShape shape, const std::string& text) {
  DriverSession& session = statements_.session_;
  const std::size_t values = shape.places.size();
  const auto insert = mayWait_ && values > 0 ? UnheededInsert(text, values) : std::nullopt;
  std::unique_ptr<DriverStatement> statement = insert ? session.PrepareInsert(*insert) : session.Prepare(text);
  prepared_ = std::make_unique<Prepared>(Prepared{std::move(shape), std::move(statement), qmx::TableOfRows(text)});
}

void ConnectionStatement::PrepareAsItStands() {
  prepared_.reset();  // on a server the prepared statement may still be in the way
  const bool needsFullMoments = statements_.session_.KeepsMomentsAsTexts();
  Prepare({}, needsFullMoments ? text_.Text(&DateTime::ToFullText) : text_.Text());
}

template <typename Use>
decltype(auto) ConnectionStatement::OrAsItStands(Use&& use) {
  try {
    return use();
  } catch (const Error& error) {
    const bool wasShared = std::exchange(isShared_, false);
    if (!wasShared || hasRow_ || !IsRefusal(error)) throw;
    if (statements_.unit_.IsOpen() && !(savepoint_ && savepoint_->RollBack())) throw;
    savepoint_.reset();
    prepared_.reset();  // behind the rollback: a refused transaction does not free a prepared statement
  }
  PrepareAsItStands();
  return use();
}

ConnectionStatement::ConnectionStatement(PreparedStatements& statements, const SqlText& text, bool mayWait)
    : statements_(statements), text_(text), mayWait_(mayWait), prepared_(statements.Take(text.Shape())) {
  const bool wasAccepted = prepared_ != nullptr;
  statements_.unit_.RequireNoFailure();
  std::optional<std::string> form;
  if (!prepared_) {
    RequireOneStatement(text.Text());
    form = FormFor(statements_.session_);
  }
  isShared_ = prepared_ || form;
  if (form && statements_.unit_.IsOpen()) savepoint_.emplace(statements_.session_);
  if (!isShared_) PrepareAsItStands();
  OrAsItStands([&] {
    if (!isShared_) return;
    if (!prepared_) Prepare(text.Shape(), *form);
    BindValues();
  });
  if (mayWait && wasAccepted && isShared_) prepared_->statement->MayWait();
}

std::optional<std::string> ConnectionStatement::FormFor(const DriverSession& session) const {
  return text_.Shape().SharedForm(session.IntegerParameter(),
                                  session.KeepsMomentsAsTexts() ? kIsMomentInEitherForm : "=?");
}

void ConnectionStatement::BindValues() {
  DriverStatement& statement = *prepared_->statement;
  const bool areTexts = statements_.session_.KeepsMomentsAsTexts();
  const SqlShape& shape = text_.Shape();
  std::size_t parameter = 0;
  for (std::size_t i = 0; i < shape.places.size(); ++i) {
    const Variant* value = &text_.Values()[i];
    const bool isMomentText = areTexts && shape.places[i].kind == SqlShape::ValueKind::Moment;
    if (isMomentText && value->IfText()) value = &InFullForm(*value);
    statement.Bind(parameter++, *value);
    if (isMomentText && shape.IsEqualMoment(shape.places[i])) statement.Bind(parameter++, *value);
  }
}

// A text that reads as a moment becomes one.
const Variant& ConnectionStatement::InFullForm(const Variant& text) {
  const std::optional<DateTime> moment = MomentOf(text);
  if (!moment) return text;
  moments_.reserve(text_.Values().size());
  return moments_.emplace_back(*moment);
}

ConnectionStatement::~ConnectionStatement() {
  if (isShared_) statements_.Keep(std::move(prepared_));
  try {
    if (savepoint_) savepoint_->Release();
  } catch (...) {
    statements_.unit_.Fail(CurrentError());
  }
}

const std::vector<ColumnDescription>& ConnectionStatement::Columns() {
  return OrAsItStands([&]() -> const std::vector<ColumnDescription>& { return prepared_->statement->Columns(); });
}

bool ConnectionStatement::Step() {
  return hasRow_ = OrAsItStands([&] { return prepared_->statement->Step(); });
}

}  // namespace qmx
