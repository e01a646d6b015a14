/// \file
/// What the program tells of itself.
#ifndef VQTYPE_IDENTITY_H
#define VQTYPE_IDENTITY_H

#include <string>

/// The program with its product and version on the first line, then the library's module, build and compiler. The last
/// line has no end.
std::string Identity();

#endif
