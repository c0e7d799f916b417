// One session of the batching driver over SQLite, without the connection above it, and a statement that adds rows.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <span>

#include "platform/batches/driver.h"
#include "platform/connection_text.h"
#include "platform/execution.h"
#include "platform/sqlite/driver.h"
#include "tests/support/fake_steady_clock.h"
#include "tests/support/faulty_driver.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {

class BatchingSession : public testing::Test {
 protected:
  BatchingSession() {
    Execution(*session_->Prepare("create table people (code integer not null primary key, floor smallint)")).Run();
  }

  std::unique_ptr<DriverStatement> Insert(bool isUnheeded = false) {
    const ColumnDescription code{.name = "code", .type = Variant::Kind::Int32};
    const ColumnDescription floor{.name = "floor", .type = Variant::Kind::Int16};
    return session_->PrepareInsert(
        {.table = "people",
         .columns = {code, floor},
         .into = "insert into people (code,floor)",
         .isUnheeded = isUnheeded,
         .describe = [](Error& error, std::span<const Variant> row) { error.With("key", row[0].ToText()); }});
  }

  static std::int64_t Added(DriverStatement& insert, std::int32_t code, bool mayWait) {
    const Variant row[] = {code, std::int16_t{1}};
    Execution execution(insert);
    EXPECT_EQ(insert.BindRow(row), 2);
    if (mayWait) insert.MayWait();
    return execution.Run();
  }

  void AddAndLetWait(DriverStatement& insert, std::initializer_list<std::int32_t> codes) {
    for (const std::int32_t code : codes) Added(insert, code, true);
  }

  std::int64_t Rows() {
    const auto count = session_->Prepare("select count(*) from people");
    count->Step();
    return count->Value(0).ToInt32();
  }

  TempFolder folder_{TempFolder::Place::InMemory};
  const ConnectionText text_{"Provider=SQLite;Mode=Create;Data Source=" + folder_ / "local.db"};
  SqliteDriver sqlite_;
  FaultyDriver below_{sqlite_};
  FakeSteadyClock clock_;
  BatchingDriver batching_{below_, clock_};
  std::unique_ptr<DriverSession> session_ = batching_.Open(text_);
};

}  // namespace qmx::test
