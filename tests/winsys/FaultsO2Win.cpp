#define FAULTS FaultsO2
#include "Faults.inc"
