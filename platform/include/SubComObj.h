#pragma once
#include <memory>
#include <string>

#include "ParamObj.h"

// One parsed subcommand.
class SubComObj {
public:
    SubComObj();
    SubComObj(const SubComObj& other);
    SubComObj& operator=(const SubComObj& other);
    ~SubComObj();

    // Null when the parameter was not given.
    const ParamObj* getParamObj(const std::string& name) const;
    // The subcommand's name as the user sees it.
    std::string getSubComExtName() const;

    struct Impl;
    Impl& impl();
    const Impl& impl() const;

private:
    std::unique_ptr<Impl> impl_;
};
