// A generated plot as CAD programs write them: absolute integer polylines, a pen change now and
// then.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace qm {

// At least `bytes` bytes; the same text at every call.
inline std::string MakeCadPlot(std::size_t bytes) {
    std::string plot = "IN;SP1;";
    plot.reserve(bytes + 256);
    std::uint32_t seed = 12345;
    const auto next = [&seed](std::uint32_t below) {
        seed = seed * 1664525U + 1013904223U;
        return (seed >> 8) % below;
    };
    while (plot.size() < bytes) {
        if (next(50) == 0) plot += "SP" + std::to_string(1 + next(8)) + ";";
        std::uint32_t x = next(33000);
        std::uint32_t y = next(23000);
        plot += "PU" + std::to_string(x) + "," + std::to_string(y) + ";PD";
        const std::uint32_t points = 1 + next(20);
        for (std::uint32_t i = 0; i < points; ++i) {
            x += next(400);
            y += next(400);
            if (i > 0) plot += ',';
            plot += std::to_string(x) + "," + std::to_string(y);
        }
        plot += ";\n";
    }
    return plot;
}

}  // namespace qm
