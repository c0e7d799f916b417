#include "platform/text_lines.h"

#include "platform/trim.h"

namespace qmx {

bool TextLines::Next() {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (!std::getline(file_, text_)) return false;
  line_ = text_;
  if (++number_ == 1) {
    isUtf16_ = line_.starts_with("\xFF\xFE") || line_.starts_with("\xFE\xFF");
    if (line_.starts_with(kByteOrderMark)) line_.remove_prefix(kByteOrderMark.size());
  }
  line_ = Trimmed(line_, kBlanks);
  return true;
}

}  // namespace qmx
