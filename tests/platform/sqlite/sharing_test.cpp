// Several programs on one file at once: processes, since locks between processes are what a run meets.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <iostream>
#include <vector>

#include "platform/database.h"
#include "platform/error.h"
#include "platform/sqlite/driver.h"
#include "tests/support/temp_folder.h"

namespace qmx::test {
namespace {

// Runs the work in a process of its own; an error there is its exit status.
pid_t Started(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child != 0) return child;
  try {
    work();
    _exit(0);
  } catch (const Error& error) {
    std::cerr << DescribeChain(error) << '\n';
    _exit(1);
  }
}

bool Succeeded(pid_t child) {
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class SqliteSharing : public testing::Test {
 protected:
  void Run(const std::string& statement) {
    Connection connection({&driver}, nullptr);
    connection.Open(text, "", "");
    connection.Execute(statement);
    connection.Close();
  }

  // Six processes open the file at the same moment, and each inserts a row.
  void InsertFromSixProcesses() {
    std::vector<pid_t> children;
    for (int number = 0; number < 6; ++number) {
      children.push_back(Started([&] { Run("insert into people values ('x')"); }));
    }
    for (const pid_t child : children) EXPECT_TRUE(Succeeded(child));
  }

  static std::int32_t Count(Connection& connection, const std::string& table) {
    Recordset records(nullptr);
    records.Open("select count(*) from " + table, connection, kCursorKeyset, kLockOptimistic, kCommandText);
    return records.Fields(0).Value().ToInt32();
  }

  void AddRows(const std::string& table, int count) {
    Connection connection({&driver}, nullptr);
    connection.Open(text, "", "");
    Recordset records(nullptr);
    records.Open(table, connection, kCursorKeyset, kLockOptimistic, kCommandTable);
    for (int row = 0; row < count; ++row) {
      records.AddNew();
      records.Fields("code") = row;
    }
    records.Close();
    connection.Close();
  }

  TempFolder folder;
  std::string text = "Provider=SQLite;Mode=Create;Data Source=" + folder / "local.db";
  SqliteDriver driver;
};

TEST_F(SqliteSharing, ProcessesFillDifferentTablesOfOneFileWhileAReaderReads) {
  constexpr int kWriters = 4;
  constexpr int kRows = 300;
  for (int writer = 0; writer < kWriters; ++writer) {
    Run("create table t" + std::to_string(writer) + " (code integer not null primary key)");
  }
  std::vector<pid_t> children;
  for (int writer = 0; writer < kWriters; ++writer) {
    children.push_back(Started([&] { AddRows("t" + std::to_string(writer), kRows); }));
  }
  {
    Connection reader({&driver}, nullptr);
    reader.Open(text, "", "");
    std::int32_t before = 0;
    for (int round = 0; round < 200; ++round) {
      const std::int32_t count = Count(reader, "t0");
      EXPECT_GE(count, before);
      before = count;
    }
  }
  for (const pid_t child : children) EXPECT_TRUE(Succeeded(child));
  Connection reader({&driver}, nullptr);
  reader.Open(text, "", "");
  for (int writer = 0; writer < kWriters; ++writer) EXPECT_EQ(Count(reader, "t" + std::to_string(writer)), kRows);
}

TEST_F(SqliteSharing, ProcessesCanOpenAFreshFileAtTheSameMoment) {
  Run("create table people (code text)");
  for (int round = 0; round < 5; ++round) InsertFromSixProcesses();
  Connection reader({&driver}, nullptr);
  reader.Open(text, "", "");
  EXPECT_EQ(Count(reader, "people"), 30);
}

TEST_F(SqliteSharing, ProcessesCanOpenAFileThatIsNotInWalModeYetAtTheSameMoment) {
  Run("create table people (code text)");
  Run("pragma journal_mode=delete");
  InsertFromSixProcesses();
  Connection reader({&driver}, nullptr);
  reader.Open(text, "", "");
  EXPECT_EQ(Count(reader, "people"), 6);
}

TEST_F(SqliteSharing, WhatWasSavedSurvivesAKilledProcess) {
  Run("create table people (code integer not null primary key)");
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  const pid_t child = Started([&] {
    Connection connection({&driver}, nullptr);
    connection.Open(text, "", "");
    Recordset records(nullptr);
    records.Open("people", connection, kCursorKeyset, kLockOptimistic, kCommandTable);
    for (int row = 0;; ++row) {
      records.AddNew();
      records.Fields("code") = row;
      records.Update();
      if (write(ends[1], "+", 1) != 1) return;
    }
  });
  close(ends[1]);
  std::int32_t saved = 0;
  for (char told; saved < 100 && read(ends[0], &told, 1) == 1;) ++saved;
  kill(child, SIGKILL);
  EXPECT_FALSE(Succeeded(child));
  for (char told; read(ends[0], &told, 1) == 1;) ++saved;
  close(ends[0]);
  Connection reader({&driver}, nullptr);
  reader.Open(text, "", "");
  EXPECT_GE(saved, 100);
  EXPECT_THAT(Count(reader, "people"), testing::AnyOf(saved, saved + 1));  // killed between saving and telling
}

}  // namespace
}  // namespace qmx::test
