// Owns the run's copy engine and turns its events into what the scheduling server and the event log hear.
//
// The switches of the run decide whether the server hears anything: without messages its message handler is never
// created, without a request number its request object is not. Nothing is trapped here: a server object that cannot be
// created fails HandleDataCopy, a server call that fails goes back to the engine at the event that caused it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "copy/clsDataCopy.h"
#include "platform/modDeclarations.h"
#include "platform/object.h"
#include "platform/platform.h"
#include "platform/variant.h"

namespace qmx {

class clsDataCopyHandler : private DataCopyEvents {
 public:
  clsDataCopyHandler(Platform& platform, modDeclarations& declarations);  // both borrowed
  ~clsDataCopyHandler() override;

  // Returns when the copy has ended; how, stands in the declarations' exit status.
  void HandleDataCopy(std::string ConnString, std::string DefaultDb, std::string DbTableName, std::string LogDirectory,
                      std::string BusComponent);

  void MyDataCopy_DataCopyStarted(Variant iTime, Variant iTableName);
  void MyDataCopy_DataCopyError(Variant iTime, Variant iTableName, Variant ieNumber, Variant ieMessage);
  void MyDataCopy_DataCopyComplete(Variant iTime, Variant iTableName, Variant icount, Variant ucount, Variant dcount);
  void MyDataCopy_DataCopyAlreadyInProgress(Variant iTime, Variant iTableName);
  void MyDataCopy_DataCopydone();

 private:
  void DataCopyStarted(Variant iTime, Variant iTableName) override;
  void DataCopyError(Variant iTime, Variant iTableName, Variant ieNumber, Variant ieMessage) override;
  void DataCopyComplete(Variant iTime, Variant iTableName, Variant icount, Variant ucount, Variant dcount) override;
  void DataCopyAlreadyInProgress(Variant iTime, Variant iTableName) override;
  void DataCopydone() override;

  void WriteToMessageBox(Variant& time, const std::string& text);
  void WriteToAlertBox(Variant& time, const std::string& text);
  void UpdateStatus(Variant& tableName, std::int16_t status);

  Platform& platform_;
  modDeclarations& declarations_;
  Object objMessHandler;     // none where ServerMessagesOff
  Object objClientRequests;  // none unless HasStatusRequestId
  std::unique_ptr<clsDataCopy> MyDataCopy;
};

}  // namespace qmx
