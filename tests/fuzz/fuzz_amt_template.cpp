// The conditional strategy's template file ("AMTOrder.dat") comes from disk, written by any
// version or damaged: any bytes load without a crash or an unbounded allocation, a file that
// loads exactly saves back byte for byte, and whatever loads saves to a file that loads back
// and saves to the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "amt/amt_params.h"
#include "spread/template_store.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const std::string_view magic = template_files::kAmtOrder.magic;
    TemplateLoadInfo info;
    const std::vector<tagAMTParams> list = parseTemplateFile<tagAMTParams>(file, magic, &info);
    if (!info.magicMatched && !list.empty()) std::abort();
    const std::string saved = composeTemplateFile(list, magic);
    if (info.exact && saved != file) std::abort();
    TemplateLoadInfo again;
    const std::vector<tagAMTParams> reloaded =
        parseTemplateFile<tagAMTParams>(saved, magic, &again);
    // Bytes, not values: a NaN read from the file never equals itself.
    if (!again.complete || reloaded.size() != list.size()) std::abort();
    if (composeTemplateFile(reloaded, magic) != saved) std::abort();
    return 0;
}
