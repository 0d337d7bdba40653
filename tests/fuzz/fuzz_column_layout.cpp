// Column layouts come from user-edited files: any text parses, every parsed column has a
// positive width, and formatting what was parsed parses back to the same columns.
#include "app/column_layout.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view text(reinterpret_cast<const char*>(data), size);
    auto columns = parseColumnLayout(text);
    for (const auto& c : columns)
        if (c.width <= 0) std::abort();
    auto again = parseColumnLayout(formatColumnLayout(columns));
    if (again != columns) std::abort();
    return 0;
}
