// Prints digests of the generated world, to compare builds, compilers and machines by.
//
//   vesk_digest sample   a wide sample, one digest for each kind of record and one for all
//   vesk_digest golden   a smaller sample, a line for each record: what tests/data/gen_golden.txt
//   holds
//
// What the generator says on standard error is dropped.
#include "WorldDigest.h"

#include <cstdio>
#include <iostream>
#include <string_view>

int main(int argc, char** argv) {
    const std::string_view command = argc == 2 ? argv[1] : "";
    if (command != "sample" && command != "golden") {
        std::fputs("usage: vesk_digest sample|golden\n", stderr);
        return 2;
    }
    std::cerr.rdbuf(nullptr);
    std::fputs((command == "sample" ? SampleDigests() : GoldenDigests()).c_str(), stdout);
    return 0;
}
