// Fuzzes the health reader: no document crashes it, and its results are complete.

#include "harness.h"
#include "hlxHealthReport.h"
#include "hlxHealthResult.h"
#include "hlxMalloc.h"

void Fuzz(Bytes input) {
    const std::string document = Text(input);
    {
        HealthReport read;
        Require(read.Read(document.c_str()) == HLX_DONE ||
                !(read.rawResult || read.message || read.url || read.restrictAddresses));
        Require(read.state <= HLX_HEALTH_HIGH);
        Require(!read.rawResult || std::strstr(document.c_str(), read.rawResult));
        Require(read.restrictCount % 2 == 0);
        std::vector(read.restrictAddresses, read.restrictAddresses + read.restrictCount);
    }
    Require(g_mf_sem == 0);
}
