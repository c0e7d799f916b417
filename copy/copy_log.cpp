// The copy log: one text file per table, to which every run appends.
//
// Neither routine traps errors: if the log cannot be written, the caller fails.
#include "copy/clsDataCopy.h"
#include "platform/clock.h"
#include "platform/error.h"
#include "platform/text_files.h"

namespace qmx {
namespace {

constexpr int kFileNumber = 1;

}  // namespace

void clsDataCopy::WriteErrorLog() {
  const Error error = CurrentError();
  platform_.files.OpenForAppend(LogFile, kFileNumber);
  if (!HeaderWritten) {
    WriteTimeHeader();
    HeaderWritten = true;
  }
  platform_.files.Write(kFileNumber, {error.Source(), error.Description()});
  platform_.files.Close(kFileNumber);
}

void clsDataCopy::WriteCountLog(const std::string& TableName, std::int32_t InsertCount, std::int32_t UpdateCount,
                                std::int32_t DeleteCount) {
  const auto writeCount = [&](std::int32_t count, const char* what) {
    platform_.files.Write(kFileNumber, {"Table : " + TableName + " - " + std::to_string(count) + " records " + what});
  };
  platform_.files.OpenForAppend(LogFile, kFileNumber);
  WriteTimeHeader();
  writeCount(InsertCount, "Inserted");
  if (UpdateCount > 0) writeCount(UpdateCount, "Updated");
  if (DeleteCount > 0) writeCount(DeleteCount, "Deleted");
  platform_.files.Close(kFileNumber);
}

void clsDataCopy::WriteTimeHeader() {
  const std::string date = platform_.clock.DateText(Now());
  const std::string time = platform_.clock.TimeText(Now());
  platform_.files.Write(kFileNumber, {"Date-Time :" + date + " : " + time});
}

}  // namespace qmx
