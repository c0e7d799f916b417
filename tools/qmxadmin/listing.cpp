#include "tools/qmxadmin/listing.h"

#include <iostream>

#include "platform/system/descriptors.h"
#include "tools/qmxadmin/json_output.h"
#include "tools/qmxadmin/terminal.h"
#include "tools/qmxadmin/text_table.h"

namespace qmx {

void Print(const Listing& listing, OutputForm form) {
  std::cout << (form == OutputForm::Json ? JsonArray(listing) : TextTable(listing, TerminalOf(kStandardOutput)));
}

Variant TextOrNull(const std::string& text) { return text.empty() ? Variant::Null() : Variant(text); }

}  // namespace qmx
