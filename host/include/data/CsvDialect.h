#pragma once
#include <string>

namespace host {

// The field separator of CSV text: of ',', ';', tab and '|', the one that
// splits the header into at least two fields and the first records into a
// constant number of fields (the header may have one field fewer, as R
// writes row names); of several, the one giving the most fields, and of
// those the first in the order above. When none is constant, the one that
// splits the header into the most fields; a comma when none splits it.
char detectDelimiter(const std::string& text);

}  // namespace host
