// The control records of tstables: the names of their columns and the codes in them.
//
// A copy reads and writes one record per table. The operator's tool shows and changes the same records.
#pragma once

#include <cstdint>

namespace qmx::control_record {

inline constexpr const char* kTableName = "TableName";
inline constexpr const char* kInUse = "in_use";
inline constexpr const char* kFreq = "freq";
inline constexpr const char* kReqd = "reqd";
inline constexpr const char* kSyme = "syme";
inline constexpr const char* kLutm = "lutm";

// in_use. Every other value means free.
inline constexpr std::int16_t kFree = 0;
inline constexpr std::int16_t kInProgress = 1;

// syme. Every other value means a full copy.
inline constexpr std::int16_t kFullCopy = 1;
inline constexpr std::int16_t kOnlyChanged = 2;

// freq and reqd of a new record.
inline constexpr std::int16_t kNewFreq = 0;
inline constexpr std::int16_t kNewReqd = 1;

}  // namespace qmx::control_record
