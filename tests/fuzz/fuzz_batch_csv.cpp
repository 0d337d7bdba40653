// The batch trader's CSV loaders over any bytes: nothing crashes, every line that is not blank
// is either a row or kept, and what a save writes reads back to the same rows and kept lines
// (so saving a file never loses what it held).
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "account/batch_csv.h"

namespace {

void check(bool ok) {
    if (!ok) std::abort();
}

template <class Table, class Parse, class Format>
void roundTrip(std::string_view bytes, Parse parse, Format format) {
    const Table first = parse(bytes);
    check(first.kept.size() == static_cast<std::size_t>(first.skipped));
    const Table again = parse(format(first));
    check(again.rows == first.rows);
    check(again.kept == first.kept);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    roundTrip<batch_csv::MultipleTable>(bytes, batch_csv::parseMultiple, batch_csv::formatMultiple);
    roundTrip<batch_csv::CustomVolTable>(bytes, batch_csv::parseCustomVol, batch_csv::formatCustomVol);
    return 0;
}
