// The text of an entry in the event log.
#pragma once

#include <string>
#include <string_view>

namespace qmx {

// The viewer replaces "%1" and "%%4711" also within the text of an entry, and there is no way to write them. So this
// puts a zero-width space behind each such percent sign. Returns as much of the text as Windows takes.
std::wstring EventEntry(std::string_view text);

}  // namespace qmx
