// Nothing but the headers that are compiled once for all tests.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
