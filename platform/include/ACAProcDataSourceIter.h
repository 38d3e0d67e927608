#pragma once
#include <memory>

#include "MultiPassRecordIter.h"

class ACAInputAdapter;

// Iterates over the cases of the adapter's data source, delivering the values
// of the adapter's variables.
class ACAProcDataSourceIter : public MultiPassRecordIter {
public:
    ACAProcDataSourceIter(ACAInputAdapter& adapter, bool flag);
    ~ACAProcDataSourceIter() override;

    bool Next() const override;
    const Record* GetCurrentRecord() const override;
    void Reset() const override;

    struct Impl;

private:
    std::unique_ptr<Impl> impl_;
};
