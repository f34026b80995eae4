// Draws the generated world to PNG files; see vesk_atlas --help and the manual page.
#include "atlas/Arguments.h"
#include "atlas/DataFile.h"
#include "atlas/PngFile.h"
#include "atlas/Scenes.h"

#include <chrono>
#include <cstdio>
#include <iostream>
#include <optional>
#include <streambuf>
#include <string>

namespace {

int Fail(int code, const std::string& reason) {
    std::fprintf(stderr, "vesk_atlas: %s\n", reason.c_str());
    return code;
}

Picture Draw(const Arguments& arguments, DataFile& data) {
    switch (arguments.command) {
    case Command::Cell:
        return DrawCell(arguments, data);
    case Command::Tour:
        return DrawTour(arguments, data);
    default:
        return DrawClusters(arguments, data);
    }
}

} // namespace

int main(int argc, char** argv) {
    std::string error;
    const std::optional<Arguments> arguments = ParseArguments(argc, argv, error);
    if (!arguments) {
        return Fail(2, error + " (vesk_atlas --help)");
    }
    if (arguments->command == Command::Help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    const auto start = std::chrono::steady_clock::now();
    std::streambuf* const errors = std::cerr.rdbuf(nullptr); // the generator's lines
    DataFile data(arguments->json, arguments->command == Command::Clusters ? "clusters" : "cells");
    const Picture picture = Draw(*arguments, data);
    std::cerr.rdbuf(errors);
    if (!data.Finish()) {
        return Fail(1, "cannot write " + arguments->json);
    }
    if (std::chrono::steady_clock::now() - start > std::chrono::seconds(1)) {
        std::fprintf(stderr, "writing %s\n", arguments->output.c_str());
    }
    error = WritePng(picture, arguments->output);
    return error.empty() ? 0 : Fail(1, "cannot write " + arguments->output + ": " + error);
}
