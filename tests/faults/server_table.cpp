// The local table on a database server.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "platform/error.h"
#include "tests/faults/target_table.h"
#include "tests/support/lent_database.h"
#include "tests/support/server_sessions.h"

namespace qmx::test::faults {
namespace {

class ServerTable : public TargetTable {
 public:
  ServerTable(const std::string& system, const Rows& old)
      : isPostgresql_(system == "PostgreSQL"), database_(system), sessions_(database_.Quiet(), isPostgresql_) {
    database_.TablesAreChanged();
    Sql("create table kept as select * from tsmdm030");
    Fill(database_.Quiet(), old);
    Sql("insert into kept select * from tsmdm030");
    text_ = database_.Base().ConnectionText();
  }

  std::string ConnectionText() const override { return text_; }
  std::string Database() const override { return ""; }
  std::string Password() const override { return "}rose"; }

  void BeginAnew(Method method) override {
    Sql("delete from tsmdm030");
    Sql("insert into tsmdm030 select * from kept");
    Sql("delete from tstables");
    Sql(ControlRecord(method));
  }
  void Release() override { Sql("update tstables set in_use = 0"); }
  void LookAt(Left& left) override { LookAtRows(database_.Quiet(), left); }

  void Do(Harm harm) override {
    if (harm == Harm::End) return sessions_.AskToEnd();
    for (const pid_t process : Processes()) {
      kill(process, harm == Harm::Kill ? SIGKILL : SIGSTOP);
      if (harm == Harm::Stop) stopped_.push_back(process);
    }
  }

  // A session notices the end of its program late, if at all, and may hold locks until then.
  void EndSessions() override {
    for (const pid_t process : stopped_) kill(process, SIGCONT);
    stopped_.clear();
    try {
      sessions_.AskToEnd();
    } catch (const Error&) {  // a server whose process was killed has ended every session
      ConnectAgain();
      sessions_.AskToEnd();
    }
    sessions_.AwaitTheirEnd();
  }

 private:
  void Sql(const std::string& statement) { database_.Quiet().Execute(statement); }

  // Each session of PostgreSQL is a process. MariaDB is one.
  std::vector<pid_t> Processes() {
    std::vector<pid_t> processes;
    if (isPostgresql_) {
      for (const std::string& id : sessions_.OfOthers()) processes.push_back(std::stoi(id));
    } else if (const char* const server = std::getenv("QMX_TEST_MARIADB_PID")) {
      processes.push_back(std::atoi(server));
    }
    return processes;
  }

  void ConnectAgain() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    for (;;) {
      try {
        database_.Quiet().Close();
      } catch (const Error&) {  // it is lost
      }
      try {
        return database_.Quiet().Open(text_, "", "");
      } catch (const Error&) {
        if (std::chrono::steady_clock::now() > end) throw;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
      }
    }
  }

  bool isPostgresql_;
  LentDatabase database_;
  ServerSessions sessions_;
  std::string text_;
  std::vector<pid_t> stopped_;
};

}  // namespace

std::unique_ptr<TargetTable> TableOnAServer(const std::string& system, const Rows& old) {
  return std::make_unique<ServerTable>(system, old);
}

}  // namespace qmx::test::faults
