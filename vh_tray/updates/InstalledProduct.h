// The product and version to which the file of an installed update belongs.
#pragma once

#include <string>

struct InstalledProduct {
    std::string name;  // empty: not known
    std::string version;
};

// Reads the version resource of the file. For a file that has none or is missing, returns the
// product that owns the agent's component on this machine.
InstalledProduct FindInstalledProduct(const char* file);
