# i386 Linux on an x86-64 one: 4-byte pointers and long, double arithmetic as on every other target.
set(CMAKE_C_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-m32 -msse2 -mfpmath=sse")
