// The probe of the file layer, shared by both platforms' implementations.
#include "FileOs.h"

namespace FileOs {

namespace {
Probe& Installed() {
    static Probe probe;
    return probe;
}
} // namespace

Probe SetProbe(Probe probe) {
    Installed().swap(probe);
    return probe;
}

bool Allowed(Call call, size_t bytes) {
    const Probe& probe = Installed();
    return !probe || probe(call, bytes);
}

} // namespace FileOs
