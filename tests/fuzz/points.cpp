// Arbitrary points for the triangulation, which must hold together: the neighbours of its
// triangles lead back.
#include "gen/Triangulate.h"
#include "support/Holds.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

namespace {

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const ErrorLines quiet;
    FuzzedDataProvider data(bytes, size);
    const bool distinctIds = data.ConsumeBool();
    const bool lattice = data.ConsumeBool();
    std::vector<DelaunayPoint> points;
    const auto coordinate = [&] {
        return lattice ? static_cast<float>(data.ConsumeIntegral<std::int8_t>())
                       : data.ConsumeFloatingPoint<float>();
    };
    while (data.remaining_bytes() > 0) {
        DelaunayPoint& point = points.emplace_back();
        point.id = distinctIds ? static_cast<std::int32_t>(points.size())
                               : data.ConsumeIntegral<std::int32_t>();
        point.x = coordinate();
        point.y = coordinate();
    }
    std::vector<DelaunayTriangle> triangles;
    const std::int32_t result = Triangulate(points, triangles);
    Require(result == 1 || (result <= -1 && result >= -4));
    Require(!distinctIds || result >= -2);
    for (const DelaunayTriangle& t : triangles) {
        const auto index = static_cast<std::int32_t>(&t - triangles.data());
        for (const std::int32_t adjacent : {t.adjAB, t.adjBC, t.adjAC}) {
            if (distinctIds && adjacent >= 0) {
                const DelaunayTriangle& other = triangles.at(static_cast<std::size_t>(adjacent));
                Require(other.adjAB == index || other.adjBC == index || other.adjAC == index);
            }
        }
    }
    return 0;
}
