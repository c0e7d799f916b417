// Expected outputs in files, which people review.
//
// With QMX_UPDATE_GOLDEN=1 in the environment the files are overwritten, and each test that does so fails, so that the
// changes are reviewed.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/temp_folder.h"

namespace qmx::test {

inline void ExpectGolden(const std::string& file, const std::string& actual) {
  const char* const update = std::getenv("QMX_UPDATE_GOLDEN");
  if (update && std::string(update) == "1") {
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    WriteFile(file, actual);
    ADD_FAILURE() << file << " was written anew: look at it.";
    return;
  }
  ASSERT_TRUE(std::filesystem::exists(file)) << file << " is missing; QMX_UPDATE_GOLDEN=1 writes it.";
  EXPECT_EQ(ReadFile(file), actual) << "QMX_UPDATE_GOLDEN=1 writes " << file << " anew.";
}

}  // namespace qmx::test
