// Leaves a mark in the environment of the program that loads it.

#include <cstdlib>

namespace {

[[maybe_unused]] const int marked = setenv("MARKING_MODULE_LOADED", "1", 1);

}  // namespace
