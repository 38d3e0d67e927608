#pragma once
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Value labels of one variable. Type 0 holds numeric values, a positive type
// (the string width) holds text values.
class VELA_ValueLabelMap {
public:
    explicit VELA_ValueLabelMap(int type = 0);
    VELA_ValueLabelMap(const VELA_ValueLabelMap& other);
    VELA_ValueLabelMap& operator=(const VELA_ValueLabelMap& other);
    ~VELA_ValueLabelMap();

    void AddPair(double value, const std::string& label);
    void AddPair(const std::string& value, const std::string& label);
    int Size() const;
    int GetType() const;

    // Pairs in the order they were added; numeric values are written as the
    // shortest text that reads back to the same double.
    std::vector<std::pair<std::string, std::string>> GetPairs() const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};
