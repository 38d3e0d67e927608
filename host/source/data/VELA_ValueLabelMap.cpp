#include "VELA_ValueLabelMap.h"

#include <cmath>

#include "data/HostError.h"
#include "data/NumberText.h"

struct VELA_ValueLabelMap::Impl {
    int type = 0;
    std::vector<std::pair<std::string, std::string>> pairs;

    // A value given twice keeps its place and takes the newer label.
    void put(std::string value, const std::string& label) {
        for (auto& pair : pairs)
            if (pair.first == value) {
                pair.second = label;
                return;
            }
        pairs.emplace_back(std::move(value), label);
    }
};

VELA_ValueLabelMap::VELA_ValueLabelMap(int type) : impl_(std::make_unique<Impl>()) {
    impl_->type = type > 0 ? type : 0;
}

VELA_ValueLabelMap::VELA_ValueLabelMap(const VELA_ValueLabelMap& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}

VELA_ValueLabelMap& VELA_ValueLabelMap::operator=(const VELA_ValueLabelMap& other) {
    if (this != &other) *impl_ = *other.impl_;
    return *this;
}

VELA_ValueLabelMap::~VELA_ValueLabelMap() = default;

void VELA_ValueLabelMap::AddPair(double value, const std::string& label) {
    if (impl_->type > 0)
        host::raiseHostError("Cannot label the number " + host::formatNumber(value) +
                             " among the values of a text variable.");
    if (!std::isfinite(value) || host::isSystemMissing(value))
        host::raiseHostError("Cannot label a missing or infinite value (label \"" + label + "\").");
    impl_->put(host::formatNumber(value), label);
}

void VELA_ValueLabelMap::AddPair(const std::string& value, const std::string& label) {
    if (impl_->type > 0) {
        std::string text = value;
        while (!text.empty() && text.back() == ' ') text.pop_back();  // text values are blank-padded
        impl_->put(std::move(text), label);
        return;
    }
    double number = 0.0;
    if (host::parseNumber(value, number) != host::NumberParse::Ok)
        host::raiseHostError("Cannot label the value \"" + value + "\" of a numeric variable: it is not a number.");
    AddPair(number, label);
}

int VELA_ValueLabelMap::Size() const { return static_cast<int>(impl_->pairs.size()); }

int VELA_ValueLabelMap::GetType() const { return impl_->type; }

std::vector<std::pair<std::string, std::string>> VELA_ValueLabelMap::GetPairs() const { return impl_->pairs; }
