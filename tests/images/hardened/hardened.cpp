// A library with all hardening of the product, and functions with which a test violates it.
#include <windows.h>

extern "C" {

BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) { return TRUE; }

// Writes `count` bytes into a buffer of 16.
int WINAPI Fill(int count) {
  volatile char buffer[16];
  for (int i = 0; i < count; ++i) buffer[i] = 'x';
  return buffer[0];
}

using Sum = int(WINAPI*)(int, double, int, double, int);
int WINAPI Add(int a, double b, int c, double d, int e) {
  return a + static_cast<int>(b) + c + static_cast<int>(d) + e;
}
// Calls a function with arguments in registers and on the stack.
int WINAPI Call(Sum function) { return function(1, 20.0, 300, 4000.0, 50000); }

}  // extern "C"
