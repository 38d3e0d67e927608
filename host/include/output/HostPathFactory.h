#pragma once
#include "PathFactory.h"

namespace host {

// The reference host's locations: the string tables of the session's language.
class HostPathFactory : public PathFactory {
public:
    std::string getStringResourcePath() const override;
};

}  // namespace host
