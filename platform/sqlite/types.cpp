#include "platform/sqlite/types.h"

#include <array>
#include <string>
#include <utility>

#include "platform/names.h"

namespace qmx {

Variant::Kind KindOfDeclaredType(std::string_view declaredType) {
  using Kind = Variant::Kind;
  // The first word that the type contains decides, so "tinyint" comes before "int".
  static constexpr std::array<std::pair<std::string_view, Kind>, 17> kWords = {{
      {"date", Kind::DateTime},
      {"timestamp", Kind::DateTime},
      {"tinyint", Kind::UInt8},
      {"smallint", Kind::Int16},
      {"bigint", Kind::Double},
      {"int", Kind::Int32},
      {"bool", Kind::Boolean},
      {"bit", Kind::Boolean},
      {"doub", Kind::Double},
      {"real", Kind::Double},
      {"floa", Kind::Double},
      {"num", Kind::Double},
      {"dec", Kind::Double},
      {"char", Kind::Text},
      {"text", Kind::Text},
      {"clob", Kind::Text},
      {"string", Kind::Text},
  }};
  const std::string folded = FoldName(declaredType);
  for (const auto& [word, kind] : kWords) {
    if (folded.find(word) != std::string::npos) return kind;
  }
  return Kind::Empty;
}

}  // namespace qmx
