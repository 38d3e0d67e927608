#pragma once

class Record;

// A record iterator that can be rewound and read again.
class MultiPassRecordIter {
public:
    virtual ~MultiPassRecordIter() = default;
    // Moves to the next case; false when no case is left.
    virtual bool Next() const = 0;
    // The current case, null before the first Next() or after the last case.
    virtual const Record* GetCurrentRecord() const = 0;
    virtual void Reset() const = 0;
};
