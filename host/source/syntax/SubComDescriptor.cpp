#include "SubComDescriptor.h"

#include "syntax/SubComDescriptorImpl.h"
#include "syntax/TextCase.h"

SubComDescriptor::SubComDescriptor(std::string name, UPSpecTypes::SubComSpec spec, bool flag1, bool flag2)
    : impl_(std::make_unique<Impl>()) {
    impl_->name = host::syntax::upperCase(name);
    impl_->spec = spec;
    impl_->flag1 = flag1;
    impl_->flag2 = flag2;
}

SubComDescriptor::SubComDescriptor(const SubComDescriptor& other)
    : impl_(std::make_unique<Impl>(*other.impl_)) {}

SubComDescriptor& SubComDescriptor::operator=(const SubComDescriptor& other) {
    if (this != &other) *impl_ = *other.impl_;
    return *this;
}

SubComDescriptor::~SubComDescriptor() = default;

void SubComDescriptor::addParamDesc(const ParamDescriptor& param) {
    // Describing a keyword again replaces the earlier description.
    for (auto& known : impl_->params) {
        if (host::syntax::equalsIgnoreCase(known.getName(), param.getName())) {
            known = param;
            return;
        }
    }
    impl_->params.push_back(param);
}

const ParamDescriptor* SubComDescriptor::getParamDesc(const std::string& name) const {
    for (const auto& p : impl_->params)
        if (host::syntax::equalsIgnoreCase(p.getName(), name)) return &p;
    return nullptr;
}

std::string SubComDescriptor::getName() const { return impl_->name; }

const SubComDescriptor::Impl& SubComDescriptor::impl() const { return *impl_; }
