#include "handler/clsDataCopyHandler.h"

#include <string_view>
#include <utility>

#include "platform/components.h"
#include "platform/error.h"
#include "platform/event_log.h"
#include "platform/trim.h"
#include "schema/local_tables.h"

namespace qmx {
namespace {

constexpr std::int16_t kStarted = 10;
constexpr std::int16_t kFailed = 20;
constexpr std::int16_t kAlreadyInProgress = 30;
constexpr std::int16_t kComplete = 40;

constexpr std::string_view kLineEnd = "\r\n";

std::string Concat(std::initializer_list<std::string_view> pieces) {
  std::string text;
  for (const std::string_view piece : pieces) text += piece;
  return text;
}

// "Service Types (tsmdm030)"
std::string Heading(const std::string& table) { return Concat({DescriptionOfTable(Trimmed(table)), " (", table, ")"}); }

}  // namespace

clsDataCopyHandler::clsDataCopyHandler(Platform& platform, modDeclarations& declarations)
    : platform_(platform), declarations_(declarations) {}

clsDataCopyHandler::~clsDataCopyHandler() = default;

void clsDataCopyHandler::HandleDataCopy(std::string ConnString, std::string DefaultDb, std::string DbTableName,
                                        std::string LogDirectory, std::string BusComponent) {
  if (!declarations_.ServerMessagesOff) {
    objMessHandler = platform_.components.CreateObject("QMXServer20.clsMessHandler");
  }
  if (declarations_.HasStatusRequestId) {
    objClientRequests = platform_.components.CreateObject("QMXServer20.ClientRequests");
  }
  MyDataCopy = std::make_unique<clsDataCopy>(platform_, declarations_, static_cast<DataCopyEvents&>(*this));
  MyDataCopy->StartDataCopy(std::move(ConnString), std::move(DefaultDb), std::move(DbTableName),
                            std::move(LogDirectory), std::move(BusComponent));
}

void clsDataCopyHandler::MyDataCopy_DataCopyStarted(Variant iTime, Variant iTableName) {
  WriteToMessageBox(iTime, Heading(iTableName.ToText()) + " : Data copy started");
  UpdateStatus(iTableName, kStarted);
}

void clsDataCopyHandler::MyDataCopy_DataCopyComplete(Variant iTime, Variant iTableName, Variant icount, Variant ucount,
                                                     Variant dcount) {
  declarations_.exitStatus = declarations_.statusWhenFinished;
  WriteToMessageBox(iTime, Concat({Heading(iTableName.ToText()), " : Copy result. Added - ", icount.ToText(),
                                   ";   Updated - ", ucount.ToText(), ";   Removed - ", dcount.ToText()}));
  UpdateStatus(iTableName, kComplete);
}

void clsDataCopyHandler::MyDataCopy_DataCopyAlreadyInProgress(Variant iTime, Variant iTableName) {
  declarations_.exitStatus = ExitStatus::Refused;
  WriteToMessageBox(iTime, Concat({" For Table ", iTableName.ToText(), " datacopy is already in progress"}));
  UpdateStatus(iTableName, kAlreadyInProgress);
}

void clsDataCopyHandler::MyDataCopy_DataCopyError(Variant iTime, Variant iTableName, Variant ieNumber,
                                                  Variant ieMessage) {
  declarations_.exitStatus = ExitStatus::CopyFailed;
  const std::string table = iTableName.ToText();
  const std::string message = ieMessage.ToText();
  platform_.eventLog.LogEvent(Concat({kLineEnd, "Database    : ", declarations_.CurrentDatabaseName, kLineEnd,
                                      "Table       : ", table, kLineEnd, "Description : ", message}),
                              EventLog::kTypeError);
  WriteToMessageBox(iTime, Heading(table) + " : Data copy FAILED");
  WriteToAlertBox(iTime, Concat({" Data copy of Table ", table, " failed.", kLineEnd, "Error is ", ieNumber.ToText(),
                                 " ", message, kLineEnd, "------------------------------------------------------"}));
  UpdateStatus(iTableName, kFailed);
}

void clsDataCopyHandler::MyDataCopy_DataCopydone() {
  objMessHandler = Object();
  objClientRequests = Object();
}

void clsDataCopyHandler::WriteToMessageBox(Variant& time, const std::string& text) {
  if (!declarations_.ServerMessagesOff) objMessHandler.Call("writeToMessageBox", Ref(time), text);
}

void clsDataCopyHandler::WriteToAlertBox(Variant& time, const std::string& text) {
  if (!declarations_.ServerMessagesOff) objMessHandler.Call("WriteToAlertBox", Ref(time), text);
}

void clsDataCopyHandler::UpdateStatus(Variant& tableName, std::int16_t status) {
  if (!declarations_.HasStatusRequestId) return;
  Variant request = declarations_.StatusRequestId;
  objClientRequests.Call("UpdateStatusByTalbe", Ref(request), Ref(tableName), status);
  try {
    declarations_.StatusRequestId = request.ToInt32();
  } catch (Error& error) {
    error.With("argument", "the request number, which the server wrote");
    objClientRequests.Target()->Describe(error, "UpdateStatusByTalbe");
    throw;
  }
}

void clsDataCopyHandler::DataCopyStarted(Variant iTime, Variant iTableName) {
  MyDataCopy_DataCopyStarted(std::move(iTime), std::move(iTableName));
}

void clsDataCopyHandler::DataCopyError(Variant iTime, Variant iTableName, Variant ieNumber, Variant ieMessage) {
  MyDataCopy_DataCopyError(std::move(iTime), std::move(iTableName), std::move(ieNumber), std::move(ieMessage));
}

void clsDataCopyHandler::DataCopyComplete(Variant iTime, Variant iTableName, Variant icount, Variant ucount,
                                          Variant dcount) {
  MyDataCopy_DataCopyComplete(std::move(iTime), std::move(iTableName), std::move(icount), std::move(ucount),
                              std::move(dcount));
}

void clsDataCopyHandler::DataCopyAlreadyInProgress(Variant iTime, Variant iTableName) {
  MyDataCopy_DataCopyAlreadyInProgress(std::move(iTime), std::move(iTableName));
}

void clsDataCopyHandler::DataCopydone() { MyDataCopy_DataCopydone(); }

}  // namespace qmx
