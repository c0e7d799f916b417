// The command line: the pieces and switches that a plain reader finds, and no byte of a password in anything that the
// program writes. The first line is a password's pattern, as in connection_text. The rest is the command line.
#include <cmath>
#include <cstdint>
#include <vector>

#include "fuzz/bare_platform.h"
#include "fuzz/input.h"
#include "fuzz/plain_numbers.h"
#include "fuzz/raised.h"
#include "fuzz/require.h"
#include "startup/modStartUp.h"
#include "tests/support/memory_files.h"

namespace qmx::fuzz {
namespace {

// A database that lets nobody in.
class RefusingDriver : public Driver {
 public:
  std::string Form() const override { return "any text"; }
  bool Serves(const ConnectionText&) const override { return true; }
  std::unique_ptr<DriverSession> Open(const ConnectionText& text) override {
    asked.push_back(text.Text());
    throw Error(errors::kLogInFailed, "Database", "The log-in failed.").With("connection text", text.Masked());
  }
  std::vector<std::string> asked;
};

std::string WithoutBlanks(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  while (!text.empty() && text.front() == ' ') text.erase(0, 1);
  return text;
}

std::vector<std::string> PiecesOf(const std::string& commandLine) {
  std::vector<std::string> pieces;
  if (commandLine.empty()) return pieces;
  pieces.emplace_back();
  for (const char c : commandLine) {
    if (c == ',') {
      pieces.emplace_back();
    } else {
      pieces.back() += c;
    }
  }
  return pieces;
}

struct Switches {
  bool messages = false;
  bool hasRequest = false;
  std::int32_t request = 0;  // stays 0 for a number that is too large
};

Switches SwitchesOf(const std::vector<std::string>& pieces) {
  if (pieces.size() < 7 || pieces[6].empty()) return {};
  const std::optional<double> number = PlainNumber(pieces[6]);
  Switches switches{true, number.has_value(), 0};
  if (!number || !(std::fabs(*number) < 1e15)) return switches;
  const double rounded = PlainRound(*number);
  if (rounded >= INT32_MIN && rounded <= INT32_MAX) switches.request = static_cast<std::int32_t>(rounded);
  return switches;
}

std::string CodeOf(const std::string& table) { return table.substr(0, table.find('=')); }

void ReadsThePieces(const std::string& commandLine, const std::vector<std::string>& pieces) {
  RequireSame(TableCode(commandLine), pieces.size() > 2 ? CodeOf(WithoutBlanks(pieces[2])) : "", "the table code");
  const std::optional<RunRequest> request = ReadRunRequest(commandLine);
  Require(request.has_value() == (pieces.size() > 3), "whether there is a run to record");
  std::string directory;
  const std::int32_t raised = NumberRaised([&] { directory = LogDirectory(commandLine); });
  Require(raised == (request ? 0 : errors::kSubscriptOutOfRange), "whether there is a log directory");
  if (!request) return;
  RequireSame(directory, pieces[3], "the log directory");
  RequireSame(request->connection, WithoutBlanks(pieces[0]), "the connection text");
  RequireSame(request->table, WithoutBlanks(pieces[2]), "the table");
  RequireSame(request->logDirectory, WithoutBlanks(pieces[3]), "the directory of the logs");
  const Switches switches = SwitchesOf(pieces);
  Require(request->statusRequest.has_value() == switches.hasRequest, "whether there is a status request");
  if (switches.hasRequest) Require(*request->statusRequest == switches.request, "the status request");
}

// What a run wrote, so that it can be searched.
std::string Everything(const BarePlatform& bare, const test::MemoryFiles& files, const std::string& raised) {
  std::string all = raised;
  for (const auto& [path, text] : files.texts) all += path + '\n' + text;
  for (const auto* lines : {&bare.eventLog.entries, &bare.eventLog.targets, &bare.failures.chains,
                            &bare.components.created, &bare.components.texts}) {
    for (const std::string& line : *lines) all += line + '\n';
  }
  return all;
}

void RequireStartUpFailure(const test::MemoryFiles& files, const std::vector<std::string>& pieces,
                           const std::string& description) {
  const std::string path = (WithoutBlanks(pieces[3]).empty() ? "C:" : pieces[3]) + "\\QMXDBSynclog.txt";
  Require(files.texts.contains(path), "the failure is in " + Shown(path));
  const std::string& text = files.texts.at(path);
  Require(
      text.find("\r\nData Copy Failed:\r\nError is - ") != std::string::npos && text.ends_with(description + "\r\n"),
      "the start-up failure log " + Shown(text));
}

void RequireRun(const BarePlatform& bare, const test::MemoryFiles& files, const RefusingDriver& driver,
                const std::vector<std::string>& pieces, const Switches& switches) {
  const std::string folder = WithoutBlanks(pieces[3]);
  const std::string table = WithoutBlanks(pieces[2]);
  RequireSame(bare.eventLog.targets.at(0), folder + "\\evtlog.txt", "the event log");
  std::vector<std::string> created;
  if (switches.messages) created.emplace_back("QMXServer20.clsMessHandler");
  if (switches.hasRequest) created.emplace_back("QMXServer20.ClientRequests");
  Require(bare.components.created == created, "the scheduling server's objects");
  const std::string connection = WithoutBlanks(pieces[0]);
  if (!driver.asked.empty()) RequireSame(driver.asked[0], connection, "the text that the driver gets");
  const bool isReadable = NumberRaised([&] { ConnectionText{connection}; }) == 0;
  Require(driver.asked.size() == (isReadable ? 1 : 0), "how often the database is opened");
  const std::string code = table.size() > 8 ? CodeOf(table) : table;
  Require(files.texts.contains(folder + "\\" + code + ".log"), "the copy log is named by " + Shown(code));
  // Without a database the table cannot be released, so the failure leaves the run before it has an event.
  RequireStartUpFailure(files, pieces, "Release of Data copy in Progress flag for table " + code + " Failed");
  Require(bare.eventLog.entries.empty(), "no event");
}

void RunTheProgram(const std::string& commandLine, const std::vector<std::string>& pieces) {
  test::CallLog calls;
  test::MemoryFiles files(calls);
  RefusingDriver driver;
  BarePlatform bare(files, {&driver});
  modDeclarations declarations;
  const std::optional<Error> error = Raised([&] { Main(bare.platform, declarations, commandLine); });
  const std::string all = Everything(bare, files, error ? DescribeChain(*error) : "");
  for (const char c : all) {
    if (static_cast<unsigned char>(c) >= 0x80) Fail("a password's byte shows in " + Shown(all));
  }
  Require(error.has_value() == (pieces.size() < 4), "whether there is a log directory for the failure");
  if (error) return Require(error->Number() == errors::kSubscriptOutOfRange, "the missing piece is error 9");
  Require(declarations.exitStatus == ExitStatus::StartUpFailed, "the exit status");
  if (pieces.size() < 6) {
    Require(files.texts.size() == 1 && bare.eventLog.targets.empty(), "nothing is begun with too few pieces");
    const std::string description = "Invalid Number of Arguments, Expected 5 or More. \r\n Application cannot Start";
    return RequireStartUpFailure(files, pieces, ": " + description);
  }
  const Switches switches = SwitchesOf(pieces);
  Require(declarations.ServerMessagesOff != switches.messages, "whether the scheduling server gets messages");
  Require(declarations.HasStatusRequestId == switches.hasRequest, "whether there are status updates");
  Require(declarations.StatusRequestId == switches.request, "the request number");
  RequireRun(bare, files, driver, pieces, switches);
}

// With a password of bytes that occur nowhere else, if the connection text is complete.
std::string WithPassword(const std::vector<std::string>& pieces, const std::string& pattern) {
  std::string password;
  for (const char c : pattern) {
    const bool isLetter = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    if (isLetter) password += static_cast<char>(0x80 | static_cast<unsigned char>(c));
    if (std::string_view(" ;='\"{[").find(c) != std::string_view::npos) password += c;
  }
  std::string line;
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    line += (i ? "," : "") + pieces[i];
    const bool isComplete = i == 0 && NumberRaised([&] { ConnectionText{WithoutBlanks(pieces[0])}; }) == 0;
    if (isComplete) line += ";PWD={" + password + "}";
  }
  return line;
}

}  // namespace
}  // namespace qmx::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmx::fuzz;
  Input input(data, size);
  const std::string pattern = input.Line();
  std::string commandLine = input.Rest();
  for (char& c : commandLine) c = static_cast<char>(c & 0x7F);
  commandLine = WithPassword(PiecesOf(commandLine), pattern);
  const std::vector<std::string> pieces = PiecesOf(commandLine);
  ReadsThePieces(commandLine, pieces);
  RunTheProgram(commandLine, pieces);
  return 0;
}
