#pragma once
// Functions that fault, built twice: without optimisation (namespace O0) and with it (O2).
// The leaf ones fault before any frame of their own exists; the guarded ones fault (or call a
// faulting leaf) while an object with a destructor is alive in their frame.
namespace FaultsO0 {
int Divide(int a, int b);
int Read(const int* p);
int DivideGuarded(int a, int b, int& destroyed);
int ReadGuarded(const int* p, int& destroyed);
} // namespace FaultsO0

namespace FaultsO2 {
int Divide(int a, int b);
int Read(const int* p);
int DivideGuarded(int a, int b, int& destroyed);
int ReadGuarded(const int* p, int& destroyed);
} // namespace FaultsO2
