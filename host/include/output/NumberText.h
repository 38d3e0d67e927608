#pragma once
#include <cstddef>
#include <string>

namespace host {

// Shortest text that reads back to the same double ("0.1", "3", "1e-07").
// Non-finite values give "NaN", "Infinity" or "-Infinity".
std::string shortestNumber(double value);

// Fixed notation with the given number of decimals; a value that rounds to
// zero has no minus sign. Non-finite values give ".", the system-missing mark.
std::string fixedNumber(double value, int decimals);

// A count with thousands separators: 16830000 gives "16,830,000".
std::string groupedCount(std::size_t count);

}  // namespace host
