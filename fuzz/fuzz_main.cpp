// A libFuzzer program of one target, whose name is the macro QM_FUZZ_TARGET:
//
//   build/asan/fuzz/fuzz_interpret -dict=build/asan/fuzz/plots.dict -max_len=4096 CORPUS
//
// scripts/fuzz does that. Inputs with a structure are mutated by tokens three times out of four.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/targets.h"
#include "fuzz/tokens.h"

namespace {

constexpr const qm::fuzz::Target& kTarget = qm::fuzz::FindTarget(QM_FUZZ_TARGET);
static_assert(kTarget.name == QM_FUZZ_TARGET, "no such target");

std::string_view Text(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

std::size_t MutateTokens(std::string_view input, std::string_view other, std::uint8_t* out,
                         std::size_t maxSize, unsigned seed) {
    qm::fuzz::Random random(seed);
    const std::string mutated = qm::fuzz::Mutate(kTarget.language, input, other, maxSize, random);
    std::copy(mutated.begin(), mutated.end(), out);
    return mutated.size();
}

}  // namespace

// libFuzzer's own mutation.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kTarget.run(Text(data, size));
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned seed) {
    if (kTarget.language == qm::fuzz::Language::kBytes || seed % 4 == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    return MutateTokens(Text(data, size), {}, data, maxSize, seed / 4);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* first, std::size_t firstSize,
                                                 const std::uint8_t* second, std::size_t secondSize,
                                                 std::uint8_t* out, std::size_t maxSize,
                                                 unsigned seed) {
    if (kTarget.language != qm::fuzz::Language::kBytes) {
        return MutateTokens(Text(first, firstSize), Text(second, secondSize), out, maxSize, seed);
    }
    // The front of one, the back of the other.
    const std::size_t front = std::min({firstSize, maxSize, seed % (firstSize + 1)});
    const std::size_t back = std::min(secondSize / 2, maxSize - front);
    std::copy_n(first, front, out);
    std::copy_n(second + (secondSize - back), back, out + front);
    return front + back;
}
