// Template files come from disk, written by any version or damaged: any bytes load without a
// crash or an unbounded allocation, a file that loads exactly saves back byte for byte, and
// whatever list loads saves to a file that loads back to the same list.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "spread/spread_templates.h"
#include "spread/template_store.h"

namespace {

template <class R>
void check(std::string_view file, std::string_view magic) {
    TemplateLoadInfo info;
    const std::vector<R> list = parseTemplateFile<R>(file, magic, &info);
    if (!info.magicMatched && !list.empty()) std::abort();
    const std::string saved = composeTemplateFile(list, magic);
    if (info.exact && saved != file) std::abort();

    TemplateLoadInfo again;
    const std::vector<R> reloaded = parseTemplateFile<R>(saved, magic, &again);
    if (!again.complete || reloaded.size() != list.size()) std::abort();
    if (composeTemplateFile(reloaded, magic) != saved) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    check<tagManualSpreadTemplate>(file, template_files::kManualSpread.magic);
    check<tagAutoSpreadTemplate>(file, template_files::kAutoSpread.magic);
    return 0;
}
