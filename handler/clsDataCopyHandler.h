// Owns the run's copy engine and turns its events into messages to the scheduling server and entries of the event log.
//
// The switches of the run decide what the server gets: without messages its message handler is not created, and without
// a request number its request object is not. Nothing is trapped here: if a server object cannot be created,
// HandleDataCopy fails, and the error of a server call reaches the engine at the event that caused it.
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

  // Returns when the copy has ended. The declarations have its exit status.
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
  Object objMessHandler;     // none if ServerMessagesOff
  Object objClientRequests;  // none unless HasStatusRequestId
  std::unique_ptr<clsDataCopy> MyDataCopy;
};

}  // namespace qmx
