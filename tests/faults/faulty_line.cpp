#include "tests/faults/faulty_line.h"

#include "platform/odbc/connection_string.h"

namespace qmx::test::faults {

std::string FaultyLine::ConnectionText() const {
  return WithOdbcKeyword(table_.ConnectionText(), "PORT", std::to_string(proxy_.Port()));
}

std::uint16_t FaultyLine::ServerPort() const {
  return static_cast<std::uint16_t>(std::stoi(OdbcKeyword(table_.ConnectionText(), "PORT")));
}

TcpProxy::Fate FaultyLine::Happens(std::string_view piece) {
  if (piece.find(text_) == std::string_view::npos || ++made_ != first_) return TcpProxy::Fate::Stays;
  if (what_ == "cut") return TcpProxy::Fate::Cut;
  if (what_ == "half-closed") return TcpProxy::Fate::HalfClosed;
  if (what_ == "silent") proxy_.Swallow(TcpProxy::Swallowed::Everything);
  if (what_ == "unanswered") proxy_.Swallow(TcpProxy::Swallowed::Answers);
  if (what_ == "ended") table_.Do(Harm::End);
  if (what_ == "killed") table_.Do(Harm::Kill);
  if (what_ == "stopped") table_.Do(Harm::Stop);
  return TcpProxy::Fate::Stays;
}

}  // namespace qmx::test::faults
