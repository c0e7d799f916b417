// Shared by tests of copies into a cluster of three nodes: a company, a database with the local tables, and the program
// through each node.
#pragma once

#include <array>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "tests/whole/server_copy.h"

namespace qmx::test {

inline constexpr int kNodes = 3;

inline std::string OfNode(int node, const std::string& what = "") {
  const char* value = std::getenv(("QMX_TEST_NODE_" + std::to_string(node) + what).c_str());
  return value ? value : "";
}

// Of the system under test, if there is a cluster.
inline std::vector<DriverUnderTest> ClustersUnderTest() {
  return DriversUnderTest([](const DriverUnderTest& driver) { return driver.name == "MariaDB" && !OfNode(1).empty(); });
}

class CopyIntoACluster : public CopyIntoAServer {
 protected:
  static constexpr const char* kTable = "tssoc200";

  explicit CopyIntoACluster(int orders) : CopyIntoAServer({{"orders", orders}}), orders_(orders) {}

  std::string TextOf(int node) {
    return WithOdbcKeyword(OfNode(node), "Database", OdbcKeyword(ConnectionText(), "Database"));
  }
  CopyProcesses ProgramOn(int node) { return {company_, TextOf(node), ""}; }

  // A session of the test's own through this node.
  OdbcConnection& On(int node) {
    std::unique_ptr<OdbcConnection>& session = sessions_[static_cast<std::size_t>(node - 1)];
    if (!session) session = std::make_unique<OdbcConnection>(TextOf(node));
    return *session;
  }

  std::string ErpsOrders() { return company_.Value("select count(*) || ' ' || max(orno) from tssoc200"); }
  std::string Orders(int node) { return On(node).AskText("select concat(count(*), ' ', max(orno)) from tssoc200"); }
  std::string InUse(int node) { return On(node).AskText("select in_use from tstables"); }
  std::string Lutm(int node) { return On(node).AskText("select lutm from tstables"); }

  // The orders that are there are the first ones in the ERP's order, which is the keys'.
  void ExpectTheFirstOrders(int node) {
    const int count = std::stoi(On(node).AskText("select count(*) from tssoc200"));
    const std::string last = On(node).AskText("select max(orno) from tssoc200");
    EXPECT_LE(count, orders_);
    const std::string first = "(select orno from tssoc200 order by orno limit " + std::to_string(count) + ")";
    EXPECT_EQ(last, company_.Value("select max(orno) from " + first));
  }

  // Of the program's last run.
  static int Retries(const CopyProcesses& program) {
    const std::string records = program.File("QMXRuns.jsonl");
    const std::string field = "\"retries\":";
    const std::size_t last = records.rfind(field);
    return last == std::string::npos ? -1 : std::stoi(records.substr(last + field.size()));
  }

  int orders_;

 private:
  std::array<std::unique_ptr<OdbcConnection>, kNodes> sessions_;
};

}  // namespace qmx::test
