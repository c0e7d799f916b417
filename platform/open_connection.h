// What a connection and its record sets share while the connection is open.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/database_driver.h"
#include "platform/database_observers.h"
#include "platform/error.h"
#include "platform/prepared_statements.h"
#include "platform/stored_table.h"
#include "platform/unit_of_work.h"

namespace qmx {

// Returns the first driver that serves the text. Raises 5 if none does.
Driver& DriverFor(const ConnectionText& text, const std::vector<Driver*>& drivers);

class OpenConnection {
 public:
  explicit OpenConnection(std::unique_ptr<DriverSession> driver)
      : driver_(std::move(driver)), unit_(*driver_), statements_(*driver_, unit_) {
    spareRows_.reserve(kMostSpareRows);
  }

  bool IsOpen() const { return driver_ != nullptr; }
  DriverSession& Driver() const;                // 3709 when closed
  StoredTable& Table(const std::string& name);  // described once; -2147217865 when there is none
  ConnectionStatement Statement(const SqlText& text, bool mayWait = false);  // 3709 when closed; the text is borrowed

  std::string Catalog() { return Driver().Catalog(); }
  void SelectCatalog(const std::string& name);   // 3219 while a record set is open
  void EnableSavepoints();                       // 3219 while a record set is open
  void DescribeEarly(const std::string& table);  // before a unit of work; raises nothing if it cannot be described
  void Atomically(const std::function<void()>& work);  // in a unit of work
  UnitOfWork& Unit() { return unit_; }
  void Close();  // closed afterwards, whatever it raises

  std::int64_t Retries() const { return retries_; }  // of the closed connection

  // Record sets call these when they open and close.
  void RecordsetOpened() { ++openRecordsets_; }
  void RecordsetClosed() { --openRecordsets_; }

  // TakeRow returns an empty row in the memory of a returned one, because a changed copy opens a record set for every
  // record.
  Row TakeRow() noexcept;
  void ReturnRow(Row row) noexcept;

 private:
  static constexpr std::size_t kMostSpareRows = 2;  // as many as a record set of one row uses

  std::unique_ptr<DriverSession> driver_;
  std::map<std::string, std::unique_ptr<StoredTable>> tables_;  // by folded name
  UnitOfWork unit_;
  PreparedStatements statements_;
  std::vector<Row> spareRows_;
  int openRecordsets_ = 0;
  std::int64_t retries_ = 0;
};

// Runs the work of a public call. Exceptions of other types become an Error.
template <typename Body>
auto TranslateExceptions(Body&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const Error&) {
    throw;
  } catch (...) {
    throw CurrentError();
  }
}

// The same, and an open unit of work of the session learns of a failure. Null is no session.
template <typename Body>
auto Noted(OpenConnection* session, Body&& body) -> decltype(body()) {
  try {
    return TranslateExceptions(body);
  } catch (const Error& error) {
    if (session) session->Unit().Fail(error);
    throw;
  }
}

// The same as TranslateExceptions, and then calls `tell` for each observer, with the error or null.
template <typename Body, typename Tell>
void Observed(const DatabaseObservers& observers, Body&& body, Tell&& tell) {
  try {
    TranslateExceptions(body);
  } catch (const Error& error) {
    observers.ForEach([&](DatabaseObserver& observer) { tell(observer, &error); });
    throw;
  }
  observers.ForEach([&](DatabaseObserver& observer) { tell(observer, nullptr); });
}

}  // namespace qmx
