// The sessions of other programs in a database on a server.
#pragma once

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/error.h"
#include "tests/support/row_texts.h"

namespace qmx::test {

class ServerSessions {
 public:
  // The connection is borrowed, and its database the one that is meant.
  ServerSessions(Connection& connection, bool isPostgresql) : connection_(connection), isPostgresql_(isPostgresql) {}

  std::vector<std::string> OfOthers() {
    return RowTexts(
        connection_,
        isPostgresql_
            ? "select pid from pg_stat_activity where datname = current_database() and pid <> pg_backend_pid()"
            : "select id from information_schema.processlist where db = database() and id <> connection_id()",
        1);
  }

  void AskToEnd() {
    for (const std::string& id : OfOthers()) {
      if (isPostgresql_) {
        RowTexts(connection_, "select pg_terminate_backend(" + id + ")", 1);
        continue;
      }
      try {
        connection_.Execute("kill " + id);
      } catch (const Error&) {  // it has ended meanwhile
      }
    }
  }

  void AwaitTheirEnd() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!OfOthers().empty()) {
      if (std::chrono::steady_clock::now() > end) throw std::runtime_error("another session does not end");
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

 private:
  Connection& connection_;
  bool isPostgresql_;
};

}  // namespace qmx::test
