/// \file
/// What the program tells of itself.
#ifndef VQTYPE_IDENTITY_H
#define VQTYPE_IDENTITY_H

#include <string>

/// The program with its product and version on the first line, then all else that the library says of itself. The last
/// line has no end.
std::string Identity();

#endif
