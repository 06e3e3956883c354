// Copies and new names of whole tables of a basin file.
#pragma once

#include "store/database.h"

#include <string_view>

namespace nivora {

/// Creates a table by its schema and fills it with the rows of another one, in their order. The values are
/// copied as they are stored. @throws StoreError, also if the other table lacks a field of the schema
void copy_table(BasinDatabase& database, std::string_view from, const TableSchema& copy);

/// Gives a daily table another name, and its index the one that belongs to it, so that a later table of the
/// old name can have an index, too. The new name may differ from the old one in case alone. @throws
/// StoreError
void rename_daily_table(BasinDatabase& database, std::string_view table, std::string_view name);

}  // namespace nivora
