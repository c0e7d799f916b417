#include "platform/system/sockets.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <optional>
#include <thread>

#include "tests/platform/odbc/loopback.h"

namespace qmx::test {
namespace {

class RecordedSockets : public testing::Test {
 protected:
  LoopbackServer server_;
  Sockets sockets_;
};

TEST_F(RecordedSockets, AreShutDownInBothDirectionsAndStayOpen) {
  Sockets::Recording recording(sockets_);
  const LoopbackConnection connection(server_);
  EXPECT_TRUE(connection.Stands());
  sockets_.ShutDown();
  EXPECT_TRUE(connection.HasEndedForBoth());
  EXPECT_GE(fcntl(connection.Client(), F_GETFD), 0);
}

TEST_F(RecordedSockets, MayBeSeveralAndAreShutDownAgainAndAgain) {
  Sockets::Recording recording(sockets_);
  const LoopbackConnection first(server_);
  sockets_.ShutDown();
  const LoopbackConnection second(server_);
  sockets_.ShutDown();
  EXPECT_TRUE(first.HasEndedForBoth());
  EXPECT_TRUE(second.HasEndedForBoth());
}

TEST_F(RecordedSockets, AreNotThoseConnectedBeforeOrAfterTheRecording) {
  const LoopbackConnection before(server_);
  { Sockets::Recording recording(sockets_); }
  const LoopbackConnection after(server_);
  sockets_.ShutDown();
  EXPECT_TRUE(before.Stands());
  EXPECT_TRUE(after.Stands());
}

TEST_F(RecordedSockets, AreNotThoseThatAnotherThreadConnectsMeanwhile) {
  Sockets::Recording recording(sockets_);
  std::optional<LoopbackConnection> others;
  std::thread([&] { others.emplace(server_); }).join();
  sockets_.ShutDown();
  EXPECT_TRUE(others->Stands());
}

TEST_F(RecordedSockets, AreNotThoseOfAnotherRecording) {
  Sockets others;
  std::optional<LoopbackConnection> connection;
  {
    Sockets::Recording recording(others);
    connection.emplace(server_);
  }
  sockets_.ShutDown();
  EXPECT_TRUE(connection->Stands());
}

TEST_F(RecordedSockets, AreForgottenIfTheirDescriptorIsUsedAgain) {
  std::optional<LoopbackConnection> recorded;
  {
    Sockets::Recording recording(sockets_);
    recorded.emplace(server_);
  }
  const int descriptor = recorded->Client();
  recorded.reset();
  const LoopbackConnection another(server_);
  const bool isFree = fcntl(descriptor, F_GETFD) < 0;
  ASSERT_TRUE(isFree || another.Client() == descriptor);
  ASSERT_EQ(isFree ? dup2(another.Client(), descriptor) : descriptor, descriptor);
  sockets_.ShutDown();
  EXPECT_TRUE(another.Stands());
  if (isFree) close(descriptor);
}

TEST_F(RecordedSockets, MayBeClosedByTheirOwnerBefore) {
  {
    Sockets::Recording recording(sockets_);
    const LoopbackConnection closed(server_);
  }
  sockets_.ShutDown();
  const LoopbackConnection next(server_);
  EXPECT_TRUE(next.Stands());
}

TEST(Connecting, FailsAsUsualIfNoServerListens) {
  sockaddr_in address;
  {
    const LoopbackServer server;
    address = server.Address();
  }
  const int client = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  EXPECT_EQ(connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address), -1);
  EXPECT_EQ(errno, ECONNREFUSED);
  close(client);
}

}  // namespace
}  // namespace qmx::test
