/// \file
/// The columns of a store, for who has only its name yet.
#ifndef VQTYPE_STORE_COLUMNS_H
#define VQTYPE_STORE_COLUMNS_H

#include <string>
#include <vector>

#include "schema.h"

namespace store {

/// The columns of the store in that file, for completion: it leaves no trace, never fails, and does not wait. None
/// where the file is no store that can be read, where nothing has opened it in its folder before (its lock file is not
/// there), and in a program without the store.
std::vector<Column> ColumnsOf(const std::string& file) noexcept;

}  // namespace store

#endif
