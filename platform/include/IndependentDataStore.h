#pragma once

class VELA_Case;

// Stores the cases of a new data file.
class IndependentDataStore {
public:
    virtual ~IndependentDataStore() = default;
    // Appends a copy of the case's observations. Raises ErrorText on failure.
    virtual void AddCase(const VELA_Case& dataCase) = 0;
};
