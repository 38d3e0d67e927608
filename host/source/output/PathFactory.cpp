#include "PathFactory.h"

#include "output/HostPathFactory.h"

// The reference host has one set of locations; every kind gets it.
PathFactory* PathFactory::getPathInstance(int /*kind*/) {
    static host::HostPathFactory factory;
    return &factory;
}
