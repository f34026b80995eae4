#include "gfx/DataPath.h"

#include <cstddef>

std::string DataPath(std::string base, std::int32_t mode, char separator) {
    if (mode == 0) {
        return base + "data" + separator;
    }
    if (mode != 1) {
        return "";
    }
    // The first cut takes the separator at the end, each of the others one directory's name.
    for (int cut = 0; cut < 4; ++cut) {
        const std::size_t last = base.rfind(separator);
        if (last != std::string::npos) {
            base.erase(last);
        }
    }
    return base + separator + "data" + separator;
}
