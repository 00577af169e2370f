// Which product, in which version, the file of an installed update belongs to.
#pragma once

#include <string>

struct InstalledProduct {
    std::string name;  // empty: not known
    std::string version;
};

// What the file's version resource says. For a file that has none, or is gone, the product that
// owns the agent's component on this machine.
InstalledProduct FindInstalledProduct(const char* file);
