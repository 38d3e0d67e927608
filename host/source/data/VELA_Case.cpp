#include "VELA_Case.h"

#include <algorithm>
#include <cstring>

#include "VELA_DataSource.h"
#include "data/DataSourceImpl.h"
#include "data/HostError.h"
#include "data/NumberText.h"

namespace {

int variableAtColumn(const VELA_DataSource& source, int column) {
    const int variable = source.impl()->layout().variableStartingAt(column);
    if (variable < 0)
        host::raiseHostError("Cannot set column " + std::to_string(column) + " of a case: no variable starts there.");
    return variable;
}

}  // namespace

VELA_Case::VELA_Case(const VELA_DataSource& source, OBS* buffer) : source_(source), buffer_(buffer) {}

void VELA_Case::InitCase() {
    const std::vector<double>& blank = source_.impl()->layout().blankCase();
    std::memcpy(buffer_, blank.data(), sizeof(OBS) * blank.size());
}

void VELA_Case::SetColumnValue(int column, const char* text, int length) {
    const int variable = variableAtColumn(source_, column);
    const int width = source_.impl()->data->variable(variable).type;
    if (width == 0)
        host::raiseHostError("Cannot put text into column " + std::to_string(column) + ": its variable is numeric.");
    char* bytes = reinterpret_cast<char*>(buffer_ + column);
    // Text ends at its length or at a NUL byte; the rest of the width is blank.
    const std::size_t used = text == nullptr || length <= 0
                                 ? 0
                                 : ::strnlen(text, static_cast<std::size_t>(std::min(length, width)));
    if (used > 0) std::memcpy(bytes, text, used);
    const std::size_t span = sizeof(OBS) * static_cast<std::size_t>(host::ColumnLayout::columnsOfType(width));
    std::memset(bytes + used, ' ', span - used);
}

void VELA_Case::SetColumnValue(int column, double value) {
    const int variable = variableAtColumn(source_, column);
    if (source_.impl()->layout().typeOf(variable) != 0)
        host::raiseHostError("Cannot put a number into column " + std::to_string(column) +
                             ": its variable is a text variable.");
    buffer_[column] = value;
}
