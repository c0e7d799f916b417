// Results of COM calls, in words and as error numbers.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace qmx {

std::string Hexadecimal(HRESULT result);  // "0x80010108"

// Returns the system's own sentence, without a full stop; empty if it has none.
std::string SystemMessage(HRESULT result);

// "0x80010108 (The object invoked has disconnected from its clients)"
std::string DescribeHresult(HRESULT result);

// Returns the classic number: the low half of an 0x800A.... result, 438 for an unknown member, 450, 13, 6, 7. Other
// results are numbers themselves.
std::int32_t NumberOf(HRESULT result);

// Returns the result that stands for an error's number: 0x800A.... for a classic number. A number that no result stands
// for is E_FAIL.
HRESULT ResultOf(std::int32_t number);

}  // namespace qmx
