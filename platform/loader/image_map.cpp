#include "platform/loader/image_map.h"

#include <sys/mman.h>

#include <cstring>
#include <random>

#include "platform/loader/call_guard.h"
#include "platform/loader/modules.h"
#include "platform/machine/text.h"

namespace platform {
namespace {

#if defined(__x86_64__)
constexpr WORD kThisMachine = kMachineX64;
#elif defined(__i386__)
constexpr WORD kThisMachine = kMachineX86;
#else
constexpr WORD kThisMachine = 0;  // runs no image
#endif

void CheckLoadable(const ImageFile& image, ImageKind kind) {
  if (image.machine != kThisMachine) throw ImageError("it is for another machine");
  const bool isLibrary = kind == ImageKind::kLibrary;
  if (isLibrary && !image.isDll) throw ImageError("it is a program, not a library");
  if (!isLibrary && (image.isDll || image.entryPoint == 0)) throw ImageError("it is no program");
  if (image.fixed) throw ImageError("it can only lie at a fixed address");
  if (image.hasThreadData) throw ImageError("it has data of its own for each thread");
  for (const ImageSection& section : image.sections) {
    if (!section.readable || (section.writable && section.executable)) {
      throw ImageError("its section " + section.name + " cannot be read, or both written and run");
    }
  }
}

// Returns the imported functions, in the order of the imports.
std::vector<FARPROC> Bind(const ImageFile& image) {
  std::vector<FARPROC> bound;
  for (const ImageLibrary& library : image.imports) {
    const Machine::EntryPoints* exports = FindBuiltIn(ToUtf16(library.name));
    if (exports == nullptr) {
      throw ImageError("there is no library " + library.name, ERROR_MOD_NOT_FOUND);
    }
    for (const ImageImport& wanted : library.functions) {
      const auto found = exports->find(wanted.name);
      if (found == exports->end()) {
        throw ImageError(library.name + " has no function " + wanted.name, ERROR_PROC_NOT_FOUND);
      }
      bound.push_back(found->second);
    }
  }
  return bound;
}

int ProtectionOf(const ImageSection& section) {
  return PROT_READ | (section.writable ? PROT_WRITE : 0) | (section.executable ? PROT_EXEC : 0);
}

}  // namespace

MappedImage::MappedImage(Bytes file, LoaderFeatures features, ImageKind kind) {
  const ImageFile image(file);
  CheckLoadable(image, kind);
  const std::vector<FARPROC> bound = Bind(image);
  void* memory = mmap(nullptr, image.size, PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (memory == MAP_FAILED) throw ImageError("there is no room for it", ERROR_NOT_ENOUGH_MEMORY);
  memory_ = static_cast<std::byte*>(memory);
  size_ = image.size;
  Fill(image, bound);
  if (features.fillsCookie) FillCookie(image);
  if (features.guardsCalls) GuardCalls(image);
  if (!Protect(image)) {
    RemoveCallTargets(memory_);
    munmap(memory_, size_);
    throw ImageError("its memory cannot be protected", ERROR_NOT_ENOUGH_MEMORY);
  }
  entryPoint_ = image.entryPoint;
  exports_ = image.exports;
  resources_ = image.resources;
}

MappedImage::~MappedImage() {
  RemoveCallTargets(memory_);
  munmap(memory_, size_);
}

void MappedImage::Fill(const ImageFile& image, const std::vector<FARPROC>& bound) {
  std::memcpy(memory_, image.headers().data(), image.headers().size());
  for (const ImageSection& section : image.sections) {
    const Bytes bytes = image.BytesOf(section);
    if (!bytes.empty()) std::memcpy(memory_ + section.address, bytes.data(), bytes.size());
  }
  // A relocation is an address of the width of this process.
  const uintptr_t moved = reinterpret_cast<uintptr_t>(memory_) - static_cast<uintptr_t>(image.base);
  for (const uint32_t place : image.relocations) {
    uintptr_t address;
    std::memcpy(&address, memory_ + place, sizeof(address));
    address += moved;
    std::memcpy(memory_ + place, &address, sizeof(address));
  }
  auto next = bound.begin();
  for (const ImageLibrary& library : image.imports) {
    for (const ImageImport& wanted : library.functions) {
      std::memcpy(memory_ + wanted.slot, &*next++, sizeof(FARPROC));
    }
  }
}

// The highest 16 bits of the cookie are 0 on a 64-bit machine.
void MappedImage::FillCookie(const ImageFile& image) {
  if (!image.loadConfiguration || image.loadConfiguration->securityCookie == 0) return;
  constexpr auto kDefault = static_cast<uintptr_t>(DefaultSecurityCookie(sizeof(uintptr_t) == 8));
  std::byte* const place = memory_ + image.loadConfiguration->securityCookie;
  uintptr_t cookie;
  std::memcpy(&cookie, place, sizeof(cookie));
  if (cookie != kDefault) return;
  std::random_device random;
  while (cookie == kDefault) {
    const uint64_t value = uint64_t{random()} << 32 | random();
    cookie = static_cast<uintptr_t>(sizeof(cookie) == 8 ? value >> 16 : value);
  }
  std::memcpy(place, &cookie, sizeof(cookie));
}

void MappedImage::GuardCalls(const ImageFile& image) {
  if (!image.loadConfiguration || !image.loadConfiguration->callTargets) return;
  const auto point = [this](uint32_t place, uintptr_t function) {
    if (place != 0 && function != 0) std::memcpy(memory_ + place, &function, sizeof(function));
  };
  point(image.loadConfiguration->guardCheck, CheckFunctionOfGuard());
  point(image.loadConfiguration->guardDispatch, DispatchFunctionOfGuard());
  AddCallTargets(memory_, size_, *image.loadConfiguration->callTargets);
}

bool MappedImage::Protect(const ImageFile& image) {
  bool done = mprotect(memory_, image.sections.front().address, PROT_READ) == 0;
  for (size_t i = 0; i < image.sections.size(); ++i) {
    const uint32_t start = image.sections[i].address;
    const size_t end = i + 1 < image.sections.size() ? image.sections[i + 1].address : size_;
    done = mprotect(memory_ + start, end - start, ProtectionOf(image.sections[i])) == 0 && done;
  }
  return done;
}

FARPROC MappedImage::Entry(LPCSTR name) const {
  const auto found = std::find_if(exports_.begin(), exports_.end(),
                                  [name](const auto& each) { return each.name == name; });
  if (found == exports_.end() || found->forwarder) return nullptr;
  return reinterpret_cast<FARPROC>(memory_ + found->address);
}

BOOL MappedImage::CallMain(DWORD reason) const {
  if (entryPoint_ == 0) return TRUE;
  using Main = BOOL(WINAPI*)(HINSTANCE, DWORD, LPVOID);
  return reinterpret_cast<Main>(memory_ + entryPoint_)(handle(), reason, nullptr);
}

ProgramEntry MappedImage::EntryPoint() const {
  return reinterpret_cast<ProgramEntry>(memory_ + entryPoint_);
}

std::vector<Resource> MappedImage::Resources() const {
  std::vector<Resource> resources;
  for (const ImageResource& each : resources_) {
    resources.push_back({each.type, each.name, {memory_ + each.address, each.size}});
  }
  return resources;
}

}  // namespace platform
