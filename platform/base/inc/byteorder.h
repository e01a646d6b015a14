/// \file
/// Scalars between memory and disk: conversion of byte order, and the room that the disk form takes.
///
/// The memory form is the host's byte order, the disk form one of two:
///
///     low four bits of a format     byte order
///     2                             big-endian: most significant byte first
///     8                             the memory form itself
///     any other                     little-endian: least significant byte first
///
/// The upper four bits of a format mean nothing here. Widths are the same in memory and on disk, whatever the target:
///
///     Char 1    Short 2    Long, Float, Int, Unsigned 4    Double 8
///
///     0x01020304 by LongStore:      format 2    01 02 03 04
///                                   format 1    04 03 02 01
///
/// All functions may be called from several threads at once.
#ifndef BYTEORDER_H
#define BYTEORDER_H

#include "vqbasedefs.h"

class MemFile;

// STORE AND LOAD

/// Converts `count` bytes from `src` to `dst`, which copies them. As all functions of this group it returns the bytes
/// written, which are also the bytes consumed. Reversing bytes is its own inverse, so Char, Short, Long, Float and
/// Double have one function for both directions.
///
/// Addresses need no alignment. `dst` may be `src`; otherwise the two areas must not overlap. With a count of 0 nothing
/// is read or written and both may be null.
VQBASE_API unsigned long CharStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// The same for 16-bit numbers, signed or not.
VQBASE_API unsigned long ShortStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// The same for 32-bit numbers; a long is 32 bits wide on every target.
VQBASE_API unsigned long LongStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// The same for IEEE 754 binary32. Floating values travel as bits: every NaN arrives as it left.
VQBASE_API unsigned long FloatStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// The same for IEEE 754 binary64.
VQBASE_API unsigned long DoubleStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// From memory to disk. The disk width of an int is a property of the format and not of the target, hence two
/// directions; ask IntSizeGet for it rather than sizeof.
VQBASE_API unsigned long IntStore(void* dst, const void* src, unsigned char format, unsigned long count);
/// From disk to memory.
VQBASE_API unsigned long IntLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// IntStore and IntLoad of unsigned numbers.
/// @{
VQBASE_API unsigned long UnsignedStore(void* dst, const void* src, unsigned char format, unsigned long count);
VQBASE_API unsigned long UnsignedLoad(void* dst, const void* src, unsigned char format, unsigned long count);
/// @}

// SIZES

/// Declares the three size functions of a type, within this header alone.
#define VQBASE_SIZE_FUNCTIONS(Type)                                                                          \
    VQBASE_API unsigned long Type##SizeGet(const void* data, unsigned char dataFormat, unsigned char format, \
                                           unsigned long count);                                             \
    VQBASE_API unsigned long Type##NullSizeGet(unsigned long count);                                         \
    VQBASE_API unsigned long Type##SizeGetFromMemFile(MemFile* file, unsigned char format, unsigned long count);

/// Three functions of each type:
///
///     SizeGet             bytes that `count` values at `data`, now in `dataFormat`, take in `format`
///     NullSizeGet         bytes that `count` null values take
///     SizeGetFromMemFile  bytes that `count` values take at the file's position, which stays where it was
///
/// All values of a type take the same room, so neither data nor file are looked at; they may be null.
/// @{
VQBASE_SIZE_FUNCTIONS(Char)
VQBASE_SIZE_FUNCTIONS(Short)
VQBASE_SIZE_FUNCTIONS(Long)
VQBASE_SIZE_FUNCTIONS(Float)
VQBASE_SIZE_FUNCTIONS(Double)
VQBASE_SIZE_FUNCTIONS(Int)
VQBASE_SIZE_FUNCTIONS(Unsigned)
/// @}

#undef VQBASE_SIZE_FUNCTIONS

#endif
