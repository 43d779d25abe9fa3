#define FAULTS FaultsO0
#include "Faults.inc"
