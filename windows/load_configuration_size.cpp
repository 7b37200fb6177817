// The symbol that windows/load_configuration.cpp adds to the size of an x86 image's load
// configuration. In a file of its own, as the assembler would replace a symbol that it knows.
#if defined(__i386__)
__asm__(".globl _load_configuration_rest\n.set _load_configuration_rest, 112 - 64");
#endif
