// Drivers of a test's own within the product's drivers: below the batches, or above them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/connection_text.h"
#include "platform/drivers/local_drivers.h"

namespace qmx::test {

enum class Place { AboveTheBatches, BelowTheBatches };

// Applies `decorate`, if there is one, to the one driver that serves this text.
inline LocalDrivers::Decorate OnlyFor(const std::string& connectionText, LocalDrivers::Decorate decorate) {
  return [text = ConnectionText(connectionText), decorate = std::move(decorate)](Driver& driver) -> Driver& {
    return decorate && driver.Serves(text) ? decorate(driver) : driver;
  };
}

// The drivers, each through `above`.
inline std::vector<Driver*> Decorated(LocalDrivers& drivers, const LocalDrivers::Decorate& above) {
  std::vector<Driver*> all = drivers.All();
  for (Driver*& driver : all) driver = &above(*driver);
  return all;
}

}  // namespace qmx::test
