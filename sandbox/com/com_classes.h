// The classes that this library serves: those of the component servers whose manifests are beside it.
#pragma once

#include <objbase.h>

#include <filesystem>
#include <string>
#include <vector>

#include "qmx/component_server.h"

namespace orvan {

struct ComClass {
  GUID id;
  std::string progId;
  std::filesystem::path library;
};

std::filesystem::path ThisLibrary();

// Reads the manifests once.
const std::vector<ComClass>& ComClasses();

// Returns a new object with a reference for the caller. Loads the server first if need be. Throws a Failure.
qmx_object* Create(const ComClass& served);

}  // namespace orvan
