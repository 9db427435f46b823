// Any bytes as a plot: detection, then interpretation in document mode. Nothing may crash, hang or
// read out of bounds; what is drawn is dropped.
//
//   build/fuzz/fuzz/interpret_fuzz -dict=fuzz/plots.dict -max_len=4096 -timeout=10 CORPUS examples/
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "interpreter/null_builder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view plot(reinterpret_cast<const char*>(data), size);
    qm::NullBuilder detection(plot);
    detection.Detect();
    qm::NullBuilder reader(plot);
    reader.EnterDocumentMode();
    reader.Interpret();
    return 0;
}
