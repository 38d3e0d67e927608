#pragma once
#include <cstddef>
#include <vector>

// The values of one case for the variables an iterator reads, in their order.
// Missing values are the most negative finite double.
class Record {
public:
    Record() = default;
    explicit Record(std::vector<double> values) : values_(std::move(values)) {}

    std::size_t Size() const { return values_.size(); }
    const double* GetAll() const { return values_.empty() ? nullptr : values_.data(); }
    std::vector<double>& values() { return values_; }

private:
    std::vector<double> values_;
};
