#pragma once
#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace host {

// The texts that mean "missing" in a column, compared with blanks at the
// ends removed. Looking a cell up costs the same however many texts there
// are, and nearly nothing for a cell whose length or first byte no text has.
class MissingValueSet {
public:
    explicit MissingValueSet(const std::vector<std::string>& texts);
    MissingValueSet(const MissingValueSet&) = delete;
    MissingValueSet& operator=(const MissingValueSet&) = delete;

    // cell without blanks at its ends; an empty cell is not looked up here.
    bool contains(std::string_view cell) const {
        if (texts_.empty()) return false;
        const std::size_t length = cell.size() < 63 ? cell.size() : 63;
        if (((lengths_ >> length) & 1u) == 0) return false;
        if (!firstBytes_[static_cast<unsigned char>(cell[0])]) return false;
        return texts_.count(cell) != 0;
    }

private:
    std::unordered_set<std::string_view> texts_;
    std::vector<std::string> owned_;
    std::uint64_t lengths_ = 0;  // bit n: a text of n bytes (63: of 63 or more)
    std::bitset<256> firstBytes_;
};

}  // namespace host
