// Converts between the program's UTF-8 and Java's UTF-16.
#pragma once

#include <jni.h>

#include <string>
#include <string_view>

namespace java_bridge {

// Replaces `text` by the UTF-16 units. Raises 13 for half of a surrogate pair and for a NUL character: a database text
// holds neither.
void ToUtf8(const jchar* units, std::size_t count, std::string& text);

// Raises 13 for a text that is not UTF-8.
std::u16string ToUtf16(std::string_view text);

}  // namespace java_bridge
