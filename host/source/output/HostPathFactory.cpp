#include "output/HostPathFactory.h"

#include "HostSession.h"
#include "output/StringResources.h"

namespace host {

std::string HostPathFactory::getStringResourcePath() const {
    return stringResourcePath(HostSession::instance().language());
}

}  // namespace host
