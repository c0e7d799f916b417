#include "startup/modStartUp.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "handler/clsDataCopyHandler.h"
#include "platform/clock.h"
#include "platform/error.h"
#include "platform/event_log.h"
#include "platform/failure_report.h"
#include "platform/text_files.h"
#include "platform/trim.h"
#include "platform/variant.h"
#include "startup/frmIcon.h"

namespace qmx {
namespace {

// The pieces of the command line, in their order.
enum Piece : std::size_t {
  kConnectionString,
  kLocalDataBase,
  kTableName,
  kLogFilePath,
  kBusComponent,
  kBusComponentRest,
  kStatusRequestId  // the only optional one
};
constexpr std::size_t kRequiredPieces = kStatusRequestId;

class CommandLine {
 public:
  explicit CommandLine(std::string_view text) {
    for (std::size_t start = 0; !text.empty() && start <= text.size();) {
      const std::size_t end = std::min(text.find(',', start), text.size());
      pieces_.emplace_back(text.substr(start, end - start));
      start = end + 1;
    }
  }

  std::size_t Count() const { return pieces_.size(); }

  const std::string& At(Piece piece) const {
    if (piece < pieces_.size()) return pieces_[piece];
    throw Error(errors::kSubscriptOutOfRange, "QMX Data Copy - Start",
                "Subscript out of range: the command line has " + std::to_string(pieces_.size()) +
                    " piece(s) between commas, and none numbered " + std::to_string(piece) +
                    "; the one numbered 3 is the log directory, into which the failure would be written");
  }

  std::string Trimmed(Piece piece) const { return std::string(qmx::Trimmed(At(piece))); }

 private:
  std::vector<std::string> pieces_;
};

void RequirePieces(const CommandLine& commandLine) {
  if (commandLine.Count() >= kRequiredPieces) return;
  throw Error(9999, "QMX Data Copy - Start",
              "Invalid Number of Arguments, Expected 5 or More. \r\n Application cannot Start")
      .With("pieces", std::to_string(commandLine.Count()) + " of at least " + std::to_string(kRequiredPieces))
      .With("wanted", "connection text, default database, table code, log directory, and the two of the component");
}

// This step ignores errors: a number that does not fit leaves the request number at 0.
void SetStatusRequestId(modDeclarations& declarations, const std::string& text) {
  try {
    declarations.StatusRequestId = Variant(text).ToInt32();
  } catch (const Error&) {
  }
}

// Depends on the last piece before trimming: blanks alone are a piece, though not a number.
void SetServerSwitches(modDeclarations& declarations, const CommandLine& commandLine) {
  if (commandLine.Count() <= kStatusRequestId || commandLine.At(kStatusRequestId).empty()) {
    declarations.ServerMessagesOff = true;
    return;
  }
  const std::string& request = commandLine.At(kStatusRequestId);
  declarations.HasStatusRequestId = ParseNumber(request).has_value();
  if (declarations.HasStatusRequestId) SetStatusRequestId(declarations, request);
}

}  // namespace

void Main(Platform& platform, modDeclarations& declarations, std::string_view commandLineText) {
  const frmIcon icon;
  icon.Icon();
  const CommandLine commandLine(commandLineText);
  try {
    RequirePieces(commandLine);
    SetServerSwitches(declarations, commandLine);
    platform.eventLog.StartLogging(commandLine.Trimmed(kLogFilePath) + "\\evtlog.txt", EventLog::kAutomatic);

    clsDataCopyHandler handler(platform, declarations);
    handler.HandleDataCopy(commandLine.Trimmed(kConnectionString), commandLine.Trimmed(kLocalDataBase),
                           commandLine.Trimmed(kTableName), commandLine.Trimmed(kLogFilePath),
                           commandLine.Trimmed(kBusComponent) + ", " + commandLine.Trimmed(kBusComponentRest));
  } catch (...) {
    declarations.exitStatus = ExitStatus::StartUpFailed;
    WriteStartupFailureLog(platform.files, platform.clock, commandLine.At(kLogFilePath));
    platform.failures.Report(CurrentError());
  }
}

std::string TableCode(std::string_view commandLineText) {
  const CommandLine commandLine(commandLineText);
  if (commandLine.Count() <= kTableName) return {};
  const std::string name = commandLine.Trimmed(kTableName);
  return name.substr(0, name.find('='));
}

std::optional<RunRequest> ReadRunRequest(std::string_view commandLineText) {
  const CommandLine commandLine(commandLineText);
  if (commandLine.Count() <= kLogFilePath) return std::nullopt;
  modDeclarations declarations;
  SetServerSwitches(declarations, commandLine);
  RunRequest request{commandLine.Trimmed(kConnectionString), commandLine.Trimmed(kTableName),
                     commandLine.Trimmed(kLogFilePath), std::nullopt};
  if (declarations.HasStatusRequestId) request.statusRequest = declarations.StatusRequestId;
  return request;
}

std::string LogDirectory(std::string_view commandLineText) { return CommandLine(commandLineText).At(kLogFilePath); }

void WriteStartupFailureLog(TextFiles& files, Clock& clock, const std::string& LogDirectory) {
  constexpr int kFile = 1;
  const Error failure = CurrentError();
  files.OpenForAppend((Trimmed(LogDirectory).empty() ? "C:" : LogDirectory) + "\\QMXDBSynclog.txt", kFile);
  const std::string date = clock.DateText(clock.Now());
  files.Print(kFile, "Date-Time :" + date + " : " + clock.TimeText(clock.Now()));
  files.Print(kFile, "Data Copy Failed:");
  files.Print(kFile, "Error is - " + std::to_string(failure.Number()) + ": " + failure.Description());
  files.Close(kFile);
}

}  // namespace qmx
