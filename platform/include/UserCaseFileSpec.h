#pragma once
#include <string>

// Specification of a data file named by the user.
class UserCaseFileSpec {
public:
    UserCaseFileSpec() = default;

    void Init(const std::string& path, bool forWriting, bool replace);
    bool IsInit() const { return initialised_; }
    const std::string& GetPath() const { return path_; }
    bool IsForWriting() const { return forWriting_; }
    bool MayReplace() const { return replace_; }

private:
    std::string path_;
    bool forWriting_ = false;
    bool replace_ = false;
    bool initialised_ = false;
};
