#include "ParamDescriptor.h"

#include "syntax/ParamDescriptorImpl.h"
#include "syntax/TextCase.h"

using host::syntax::equalsIgnoreCase;

ParamDescriptor::ParamDescriptor(std::string name, UPSpecTypes::ParamSpec spec, bool flag1, bool flag2,
                                 UPSpecTypes::BracketOptions brackets)
    : impl_(std::make_unique<Impl>()) {
    impl_->name = host::syntax::upperCase(name);
    impl_->spec = spec;
    impl_->flag1 = flag1;
    impl_->flag2 = flag2;
    impl_->brackets = brackets;
}

ParamDescriptor::ParamDescriptor(const ParamDescriptor& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}

ParamDescriptor& ParamDescriptor::operator=(const ParamDescriptor& other) {
    if (this != &other) *impl_ = *other.impl_;
    return *this;
}

ParamDescriptor::~ParamDescriptor() = default;

void ParamDescriptor::addStringValue(const std::string& value) {
    const std::string word = host::syntax::upperCase(value);
    for (const auto& known : impl_->allowedValues)
        if (known == word) return;
    impl_->allowedValues.push_back(word);
}

void ParamDescriptor::addQualifDesc(const ParamDescriptor& qualifier) {
    // Describing a qualifier again replaces the earlier description.
    for (auto& known : impl_->qualifiers) {
        if (equalsIgnoreCase(known.getName(), qualifier.getName())) {
            known = qualifier;
            return;
        }
    }
    impl_->qualifiers.push_back(qualifier);
}

void ParamDescriptor::setQualifOption(UPSpecTypes::QualifOptions option) {
    impl_->hasQualifOption = true;
    impl_->qualifOption = option;
}

void ParamDescriptor::setLowerBoundary(double bound, UPSpecTypes::LowerBdryOptions option) {
    impl_->lower = bound;
    impl_->lowerOption = option;
}

void ParamDescriptor::setUpperBoundary(double bound, UPSpecTypes::UpperBdryOptions option) {
    impl_->upper = bound;
    impl_->upperOption = option;
}

std::string ParamDescriptor::getName() const { return impl_->name; }

const ParamDescriptor::Impl& ParamDescriptor::impl() const { return *impl_; }

const ParamDescriptor* ParamDescriptor::Impl::findQualifier(const std::string& qualifierName) const {
    for (const auto& q : qualifiers)
        if (equalsIgnoreCase(q.getName(), qualifierName)) return &q;
    return nullptr;
}
