#pragma once
#include <string>

// Host locations. Kind 3 is the location of the procedures' resources.
class PathFactory {
public:
    static PathFactory* getPathInstance(int kind);
    virtual ~PathFactory() = default;

    // Folder holding the string tables of the current language.
    virtual std::string getStringResourcePath() const = 0;
};
