#include "ParamObj.h"

#include <climits>
#include <cmath>
#include <new>

#include "syntax/ParamObjImpl.h"
#include "syntax/TextCase.h"

ParamObj::ParamObj() : impl_(std::make_unique<Impl>()) {}
ParamObj::ParamObj(std::unique_ptr<Impl> impl) : impl_(impl ? std::move(impl) : std::make_unique<Impl>()) {}
ParamObj::ParamObj(const ParamObj& other) : impl_(std::make_unique<Impl>(*other.impl_)) {}

ParamObj& ParamObj::operator=(const ParamObj& other) {
    if (this != &other) *impl_ = *other.impl_;
    return *this;
}

// A moved-from object keeps a valid, empty state.
ParamObj::ParamObj(ParamObj&& other) noexcept : impl_(std::move(other.impl_)) {
    other.impl_.reset(new (std::nothrow) Impl());
}

ParamObj& ParamObj::operator=(ParamObj&& other) noexcept {
    if (this != &other) impl_.swap(other.impl_);
    return *this;
}

ParamObj::~ParamObj() = default;

ParamObj::Impl& ParamObj::impl() { return *impl_; }
const ParamObj::Impl& ParamObj::impl() const { return *impl_; }

bool ParamObj::getStringList(std::vector<std::string>& out) const {
    switch (impl_->value) {
        case Impl::Value::Variables: out = impl_->names; return true;
        case Impl::Value::Word:
        case Impl::Value::String: out = {impl_->text}; return true;
        case Impl::Value::Number: out = {impl_->token}; return true;
        case Impl::Value::None: break;
    }
    return false;
}

bool ParamObj::getUpStringGeneric(std::string& out) const {
    if (impl_->value == Impl::Value::Word) {
        out = host::syntax::upperCase(impl_->text);
        return true;
    }
    // A single variable name is a word too.
    if (impl_->value == Impl::Value::Variables && impl_->names.size() == 1) {
        out = host::syntax::upperCase(impl_->names[0]);
        return true;
    }
    return false;
}

bool ParamObj::getStringOrLiteral(std::string& out, bool& isLiteral) const {
    if (impl_->value == Impl::Value::String) {
        out = impl_->text;
        isLiteral = true;
        return true;
    }
    if (impl_->value == Impl::Value::Word) {
        out = impl_->text;
        isLiteral = false;
        return true;
    }
    return false;
}

bool ParamObj::getNumberValue(double& out) const {
    if (impl_->value != Impl::Value::Number) return false;
    out = impl_->number;
    return true;
}

bool ParamObj::getIntegerValue(int& out) const {
    if (impl_->value != Impl::Value::Number) return false;
    const double v = impl_->number;
    if (std::floor(v) != v || v < static_cast<double>(INT_MIN) || v > static_cast<double>(INT_MAX))
        return false;
    out = static_cast<int>(v);
    return true;
}

bool ParamObj::getVarList(std::vector<std::string>& out) const {
    if (impl_->value != Impl::Value::Variables) return false;
    out = impl_->names;
    return true;
}

bool ParamObj::getVarName(std::string& out) const {
    if (impl_->value != Impl::Value::Variables || impl_->names.size() != 1) return false;
    out = impl_->names[0];
    return true;
}

bool ParamObj::getStringQualList(std::vector<ParamObj>& out, const ParamDescriptor* /*desc*/,
                                 const ParserMessage* /*message*/) const {
    // The parser has checked the qualifiers against the descriptor already.
    // A keyword written without "( )" has an empty list.
    out = impl_->qualifiers;
    return true;
}

const ParamObj* ParamObj::getParamObj(const std::string& name, const std::vector<ParamObj>& list) {
    for (const auto& p : list)
        if (host::syntax::equalsIgnoreCase(p.impl().name, name)) return &p;
    return nullptr;
}

std::string ParamObj::getParamName() const { return impl_->name; }
std::string ParamObj::getSubComExtName() const { return impl_->subComExtName; }
std::string ParamObj::getStringToken() const { return impl_->token; }
