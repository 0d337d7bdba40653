// The algo order file comes from disk, written by any version or damaged: any bytes load
// without a crash or an unbounded allocation, every order loaded keeps its quantities in
// bounds, and whatever list loads saves to a file that loads back to the same bytes.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "algo/algo_file.h"

namespace {

std::vector<const CAlgoOrder*> pointers(const std::vector<CAlgoOrder>& list) {
    std::vector<const CAlgoOrder*> out;
    for (const auto& o : list) out.push_back(&o);
    return out;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const std::vector<CAlgoOrder> list = algo_file::parse(file);
    for (const CAlgoOrder& o : list) {
        if (!(o.filled() <= o.m_dTotal + 1e-9) || o.remaining() < 0) std::abort();
        if (o.m_nSerial <= 0 || (o.m_dSliceFilled > 0 && !o.m_bSliceOpen)) std::abort();
    }
    const std::string saved = algo_file::compose(pointers(list));
    bool complete = false;
    const std::vector<CAlgoOrder> again = algo_file::parse(saved, &complete);
    if (!complete || again.size() != list.size()) std::abort();
    const std::string resaved = algo_file::compose(pointers(again));
    if (algo_file::compose(pointers(algo_file::parse(resaved))) != resaved) std::abort();
    return 0;
}
