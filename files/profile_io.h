// The transfer context of a backup file: where it lies, which section is current, and whether
// fields are read or written. Every key operation follows its direction. Texts in the file are code
// page 932.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

namespace kestrel {

enum class TransferDirection { kLoad = 0, kSave = 1 };

// Starts a transfer with a file. A name without a backslash lies in the system directory. False for
// a path that has no form in code page 932 or is longer than 259 bytes there.
bool BeginTransfer(const WCHAR* fileName, TransferDirection direction);
// Whether the transfer that runs is a save.
bool Saving();
// The section that the next operations use.
void BeginSection(const WCHAR* name);
// A numbered section such as PAPER07.
void BeginSection(const WCHAR* prefix, int number);
// Deletes the current section; nothing on a load.
void ClearSection();
// Whether the current section holds at least one key.
bool SectionHasKeys();

// A read answers how many elements it found, 0 for a missing or empty value, and then changes
// nothing; a write answers whether the platform wrote (1 or 0).
int Int16Field(const char* key, void* field);
int Int32Field(const char* key, void* field);
// Up to count 32-bit values joined by ","; an empty element leaves its value and counts.
int Int32List(const char* key, void* fields, int count);
// A name in a field of units UTF-16 units; a missing or empty value reads as the empty name.
int NameField(const char* key, WCHAR* field, size_t units);
// Text of code page 932 as it stands, in a buffer of size bytes, terminator included.
int RawText(const char* key, char* buffer, int size);

}  // namespace kestrel
