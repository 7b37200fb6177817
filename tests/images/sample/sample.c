// A small Windows library with one of everything that a loader has to do: the tests load it, and the
// fuzzer begins with it.
typedef unsigned short WCHAR;
typedef void *HANDLE;
__declspec(dllimport) unsigned __stdcall GetLastError(void);
__declspec(dllimport) void __stdcall SetLastError(unsigned error);
__declspec(dllimport) int __stdcall LoadStringW(HANDLE instance, unsigned id, WCHAR *text, int size);
__declspec(dllimport) int __cdecl wsprintfW(WCHAR *text, const WCHAR *format, ...);

static HANDLE instance;
static int count = 41;
static int Twice(int n) { return 2 * n; }
static int Minus(int n) { return -n; }
static int (*const functions[])(int) = {Twice, Minus}; // whole addresses, to be relocated

int __stdcall Apply(int which, int n) { return functions[which & 1](n); }
int __stdcall Count(void) { return ++count; }
int __stdcall Text(WCHAR *text) { return LoadStringW(instance, 3, text, 20); }
int __stdcall Fill(WCHAR *text, int n, const WCHAR *name) { return wsprintfW(text, L"%d %s", n, name); }

// Attaching fails for a caller whose last error is 1234; detaching leaves 5678.
int __stdcall DllMain(HANDLE module, unsigned reason, void *reserved) {
  instance = module;
  if (reason == 0) SetLastError(5678);
  return reason != 1 || GetLastError() != 1234;
}
