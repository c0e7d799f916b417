// The only exception type of public interfaces.
//
// An Error has a number, a source and a description, as automation errors have. The platform adds details
// (statement, table, column, key, SQLSTATE, component member). Logs and messages show the three texts without details.
// The chain that a failed run writes to standard error shows the details too.
//
// An Error that is created while another exception is handled keeps that one as its cause. No text holds a password.
#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qmx {

// The classic automation numbers, which readers of the logs know.
namespace errors {
inline constexpr std::int32_t kInvalidCall = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kInterrupted = 18;
inline constexpr std::int32_t kInternal = 51;
inline constexpr std::int32_t kBadFileNumber = 52;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kFileAlreadyOpen = 55;
inline constexpr std::int32_t kDeviceIo = 57;
inline constexpr std::int32_t kDiskFull = 61;
inline constexpr std::int32_t kInputPastEnd = 62;
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kPathFileAccess = 75;
inline constexpr std::int32_t kPathNotFound = 76;
inline constexpr std::int32_t kObjectNotSet = 91;
inline constexpr std::int32_t kInvalidUseOfNull = 94;
inline constexpr std::int32_t kCannotCreateObject = 429;
inline constexpr std::int32_t kNoSuchMember = 438;
inline constexpr std::int32_t kWrongArgumentCount = 450;
inline constexpr std::int32_t kNoCurrentRow = 3021;
inline constexpr std::int32_t kNotAllowedNow = 3219;
inline constexpr std::int32_t kNoSuchColumn = 3265;
inline constexpr std::int32_t kClosed = 3704;
inline constexpr std::int32_t kAlreadyOpen = 3705;
inline constexpr std::int32_t kConnectionClosed = 3709;
inline constexpr std::int32_t kProviderUnspecified = -2147467259;
inline constexpr std::int32_t kCommand = -2147217900;
inline constexpr std::int32_t kIntegrity = -2147217873;
inline constexpr std::int32_t kNoSuchTable = -2147217865;
inline constexpr std::int32_t kTimeout = -2147217871;
inline constexpr std::int32_t kRowChanged = -2147217864;
inline constexpr std::int32_t kLogInFailed = -2147217843;
}  // namespace errors

class Error : public std::exception {
 public:
  using Detail = std::pair<std::string, std::string>;  // what, value: ("column", "cstp")

  // Takes the exception in flight, if there is one, as the cause.
  Error(std::int32_t number, std::string source, std::string description);

  // Adds a detail unless the error has one of that name, because the innermost place knows best.
  Error& With(const std::string& what, std::string value);

  // Appends this error and its causes to the causes, except those that are among them.
  Error& AddCauses(const Error& error);

  std::int32_t Number() const { return number_; }
  const std::string& Source() const { return source_; }
  const std::string& Description() const { return description_; }
  const std::vector<Detail>& Details() const { return details_; }
  const std::string& DetailOf(std::string_view what) const;  // empty if there is none of that name
  const Error* Cause() const { return cause_.get(); }        // null if there is none; lives as long as this error

  const char* what() const noexcept override { return description_.c_str(); }

 private:
  friend Error CurrentError();
  struct NoCause {};  // for an Error that stands for the exception in flight
  Error(NoCause, std::int32_t number, std::string source, std::string description);
  void AddCause(const Error& error);  // without its own causes

  std::int32_t number_;
  std::string source_;
  std::string description_;
  std::vector<Detail> details_;
  std::shared_ptr<const Error> cause_;
};

// Returns the error being handled; for handlers only. An exception of another type becomes error 7 (no memory) or 51,
// with its own text as the description.
Error CurrentError();

// Adds 100, as every nested trap of the copy engine does. Raises 6 past the largest 32-bit number.
std::int32_t NumberPlus100(std::int32_t number);

// Describes the chain of causes, outermost first, one line for each: number, source, description, details. Line ends
// and other control characters inside a text become blanks. The last line has no line end.
std::string DescribeChain(const Error& error);

}  // namespace qmx
