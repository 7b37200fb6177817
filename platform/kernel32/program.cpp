#include "platform/kernel32/program.h"

#include <csetjmp>

#include "platform/loader/modules.h"
#include "platform/machine/last_error.h"
#include "platform/machine/machine.h"

namespace platform {
namespace {

struct Running {
  std::u16string commandLine;
  ProgramResult result;
  std::jmp_buf exit;
};
thread_local Running* running = nullptr;

// Standard handles are small numbers, which no other handle uses.
HANDLE StandardHandle(DWORD which) { return reinterpret_cast<HANDLE>(ULONG_PTR{which & 0xFF}); }

std::string* OutputOf(HANDLE file) {
  if (running == nullptr) return nullptr;
  if (file == StandardHandle(STD_OUTPUT_HANDLE)) return &running->result.output;
  if (file == StandardHandle(STD_ERROR_HANDLE)) return &running->result.errors;
  return nullptr;
}

}  // namespace

ProgramResult RunProgram(ProgramEntry entry, const std::u16string& commandLine) {
  Running program;
  program.commandLine = commandLine;
  running = &program;
  if (setjmp(program.exit) == 0) entry();
  running = nullptr;
  return std::move(program.result);
}

ProgramResult RunProgram(Bytes image, const std::u16string& commandLine) {
  const MappedImage program(image, SystemLoaderFeatures(), ImageKind::kProgram);
  return RunProgram(program.EntryPoint(), commandLine);
}

}  // namespace platform

using namespace platform;

LPWSTR WINAPI GetCommandLineW() {
  static WCHAR none[] = u"";
  return running == nullptr ? none : running->commandLine.data();
}

HANDLE WINAPI GetStdHandle(DWORD which) {
  if (which == STD_OUTPUT_HANDLE || which == STD_ERROR_HANDLE) return StandardHandle(which);
  SetLastError(ERROR_INVALID_HANDLE);
  return INVALID_HANDLE_VALUE;
}

BOOL WINAPI WriteFile(HANDLE file, LPCVOID bytes, DWORD size, LPDWORD written, OVERLAPPED*) {
  if (written != nullptr) *written = 0;
  std::string* const text = OutputOf(file);
  if (text == nullptr) return Fail(ERROR_INVALID_HANDLE);
  if (Machine::Current().faults.ShouldFail(Fault::kStore)) return Fail(ERROR_DISK_FULL);
  text->append(static_cast<const char*>(bytes), size);
  if (written != nullptr) *written = size;
  return TRUE;
}

void WINAPI ExitProcess(UINT exitCode) {
  if (running == nullptr) std::exit(static_cast<int>(exitCode));
  running->result.exitCode = exitCode;
  std::longjmp(running->exit, 1);
}
