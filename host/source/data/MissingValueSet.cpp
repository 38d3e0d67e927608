#include "data/MissingValueSet.h"

#include "data/NumberText.h"

namespace host {

MissingValueSet::MissingValueSet(const std::vector<std::string>& texts) {
    owned_.reserve(texts.size());
    for (const std::string& text : texts) {
        const std::string_view trimmed = trimBlanks(text);
        if (!trimmed.empty()) owned_.emplace_back(trimmed);
    }
    texts_.reserve(owned_.size());
    for (const std::string& text : owned_) {
        texts_.insert(text);
        lengths_ |= std::uint64_t{1} << (text.size() < 63 ? text.size() : 63);
        firstBytes_.set(static_cast<unsigned char>(text[0]));
    }
}

}  // namespace host
