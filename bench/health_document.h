// A health document of any size.
#pragma once

#include <string>

// As an agent writes it, with a line for each of its checks, which the reader passes over.
inline std::string HealthDocument(int checks) {
    std::string document =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<HLXHealthResult version=\"1.0\">\n"
        "<AutoInstall>yes</AutoInstall>\n<Enabled>true</Enabled>\n"
        "<HealthState>medium</HealthState>\n<DisplayHealthIcon>true</DisplayHealthIcon>\n"
        "<Message popup=\"true\">Please contact your administrator.</Message>\n"
        "<Browser popup=\"false\" url=\"howto.html\"/>\n"
        "<RestrictIP>10.0.0.1-10.0.0.254</RestrictIP>\n";
    for (int i = 0; i < checks; ++i)
        document += "<Check name=\"signatures-" + std::to_string(i) +
                    "\" passed=\"true\">The signatures are of today.</Check>\n";
    return document + "</HLXHealthResult>\n";
}
