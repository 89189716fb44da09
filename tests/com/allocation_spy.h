#pragma once

#include <cstddef>
#include <string>

/// Sees every block of the platform's task allocator, from which strings, arrays and the memory
/// that crosses COM interfaces come. It watches from the first call on, until the process ends.
namespace allocation_spy {

/// A point in time.
std::size_t Now();

/// The blocks allocated since then that have not been freed, as text; empty where there is none.
std::string OutstandingSince(std::size_t then);

/// How many they are.
std::size_t CountSince(std::size_t then);

/// From now on larger blocks are refused.
void Limit(std::size_t bytes);

}  // namespace allocation_spy
