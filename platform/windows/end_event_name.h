// How a program asks one that it started to end: it signals an event of Windows. Unlike a console event this needs no
// console that both have, and Wine has it.
#pragma once

namespace qmx {

// The environment variable that holds the event's name.
inline constexpr const wchar_t* kEndEventVariable = L"QMX_END_EVENT";

}  // namespace qmx
