// Texts whose letters no single code page has.
#pragma once

#include <string>
#include <vector>

namespace qmx::test {

inline std::vector<std::string> LettersOfManyScripts() {
  return {"Zürich", "Łódź", "Ωμέγα", "Жук", "שלום", "สวัสดี", "東京", "한국어", "🙂 🜁", "e\u0301"};
}

}  // namespace qmx::test
