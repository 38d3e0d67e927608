#include "UserCaseFileSpec.h"

// A specification without a path names no file and stays uninitialised.
void UserCaseFileSpec::Init(const std::string& path, bool forWriting, bool replace) {
    path_ = path;
    forWriting_ = forWriting;
    replace_ = replace;
    initialised_ = !path.empty();
}
