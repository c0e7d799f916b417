// Splits a text at "=" signs. An empty text has no pieces. A missing piece is error 9.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/error.h"

namespace qmx {

inline std::vector<std::string> SplitAtEquals(std::string_view text) {
  std::vector<std::string> pieces;
  if (text.empty()) return pieces;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('=', start), text.size());
    pieces.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  return pieces;
}

// `what` names the text in the error.
inline const std::string& PieceAt(const std::vector<std::string>& pieces, std::size_t index, std::string_view text,
                                  std::string_view what) {
  if (index < pieces.size()) return pieces[index];
  throw Error(errors::kSubscriptOutOfRange, "clsDataCopy",
              "Subscript out of range: " + std::string(what) + " \"" + std::string(text) + "\" has " +
                  std::to_string(pieces.size()) + " piece(s) between \"=\" signs, piece " + std::to_string(index + 1) +
                  " is wanted.");
}

}  // namespace qmx
