// Decimal numbers of COM as exact texts: "-12.34". They have more digits than a double keeps.
#pragma once

#include <oaidl.h>
#include <oleauto.h>

#include <string>

namespace qmx {

// The texts have no zeros at the end of a fraction, and "." as the point.
std::string DecimalText(const DECIMAL& number);
std::string CurrencyText(const CY& amount);  // a currency amount counts ten-thousandths

}  // namespace qmx
