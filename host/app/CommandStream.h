#pragma once
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "SyntaxSource.h"
#include "runner/CommandSplitter.h"

// The commands of the syntax texts, in order, split off one at a time as
// they are asked for, so that only the command being run is held apart
// from the texts.
class CommandStream {
public:
    // The texts must outlive the stream.
    explicit CommandStream(const std::vector<SyntaxText>& texts);

    // The next command; false when there is none left.
    bool next(host::SyntaxCommand& command);
    // The source of the command last returned.
    const std::string& sourceName() const { return texts_[current_].sourceName; }

private:
    const std::vector<SyntaxText>& texts_;
    std::size_t current_ = 0;
    std::unique_ptr<host::CommandSplitter> splitter_;
};
