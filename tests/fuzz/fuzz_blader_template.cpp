// The ladder robot's template file comes from disk, written by any version or damaged: any
// bytes load without a crash or an unbounded allocation, a file that loads exactly saves back
// byte for byte, and whatever list loads saves to a file that loads back and saves the same
// bytes again (an unreadable GBK byte in a name is saved as "?": the first save may change a
// name, no later one does).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "robots/blader_setting.h"
#include "spread/template_store.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const std::string_view magic = template_files::kBlader.magic;
    TemplateLoadInfo info;
    const auto list = parseTemplateFile<tagBladerSetting>(file, magic, &info);
    if (!info.magicMatched && !list.empty()) std::abort();
    const std::string saved = composeTemplateFile(list, magic);
    if (info.exact && saved != file) std::abort();
    TemplateLoadInfo again;
    const auto reloaded = parseTemplateFile<tagBladerSetting>(saved, magic, &again);
    if (!again.complete || reloaded.size() != list.size()) std::abort();
    if (composeTemplateFile(reloaded, magic) != saved) std::abort();
    return 0;
}
