// Whether a workbook that a library has made has all its bytes.
#pragma once

#include <cstddef>
#include <string_view>

namespace tarnlink {

// True if every part of the .xlsx file `zip` is a whole document of its own, and the rows of its
// sheet, all between the tags of its data, are `row_bytes` long. Takes no memory to speak of.
bool IsWholeWorkbook(std::string_view zip, std::size_t row_bytes);

}  // namespace tarnlink
