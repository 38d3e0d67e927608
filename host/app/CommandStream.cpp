#include "CommandStream.h"

CommandStream::CommandStream(const std::vector<SyntaxText>& texts) : texts_(texts) {
    if (!texts_.empty()) splitter_ = std::make_unique<host::CommandSplitter>(texts_.front().text);
}

bool CommandStream::next(host::SyntaxCommand& command) {
    while (splitter_) {
        if (splitter_->next(command)) return true;
        if (++current_ == texts_.size()) {
            current_ = texts_.size() - 1;  // the source of the last command stays known
            splitter_.reset();
        } else {
            splitter_ = std::make_unique<host::CommandSplitter>(texts_[current_].text);
        }
    }
    return false;
}
