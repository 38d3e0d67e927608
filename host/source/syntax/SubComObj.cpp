#include "SubComObj.h"

#include "syntax/ParamObjImpl.h"
#include "syntax/SubComObjImpl.h"
#include "syntax/TextCase.h"

SubComObj::SubComObj() : impl_(std::make_unique<Impl>()) {}
SubComObj::SubComObj(const SubComObj& other) : impl_(std::make_unique<Impl>(*other.impl_)) {}

SubComObj& SubComObj::operator=(const SubComObj& other) {
    if (this != &other) *impl_ = *other.impl_;
    return *this;
}

SubComObj::~SubComObj() = default;

const ParamObj* SubComObj::getParamObj(const std::string& name) const {
    for (const auto& p : impl_->params)
        if (host::syntax::equalsIgnoreCase(p.impl().name, name)) return &p;
    return nullptr;
}

std::string SubComObj::getSubComExtName() const { return impl_->extName; }

SubComObj::Impl& SubComObj::impl() { return *impl_; }
const SubComObj::Impl& SubComObj::impl() const { return *impl_; }
