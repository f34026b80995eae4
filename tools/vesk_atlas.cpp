// Draws the generated world to PNG files; see vesk_atlas --help and the manual page.
#include "atlas/Arguments.h"
#include "atlas/DataFile.h"
#include "atlas/Interrupt.h"
#include "atlas/OutputFile.h"
#include "atlas/PngFile.h"
#include "atlas/Scenes.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <iostream>
#include <list>
#include <new>
#include <optional>
#include <string>

namespace {

int Fail(int code, const std::string& reason) {
    std::fprintf(stderr, "vesk_atlas: %s\n", reason.c_str());
    return code;
}

int Print(const char* text) {
    const bool printed = std::fputs(text, stdout) >= 0 && std::fflush(stdout) == 0;
    return printed ? 0 : Fail(1, std::string("cannot write: ") + std::strerror(errno));
}

Picture Draw(const Arguments& arguments, DataFile& data, OutputFile* tiledMap) {
    switch (arguments.command) {
    case Command::Cell:
        return DrawCell(arguments, data, tiledMap);
    case Command::Tour:
        return DrawTour(arguments, data);
    default:
        return DrawClusters(arguments, data);
    }
}

// Every file is opened before the work begins, and comes to its place after all have been written.
void WritePicture(const Arguments& arguments) {
    std::list<OutputFile> files;
    const auto open = [&files](const std::string& target) {
        return target.empty() ? nullptr : &files.emplace_back(target);
    };
    OutputFile* const picture = open(arguments.output);
    OutputFile* const records = open(arguments.json);
    OutputFile* const tiledMap = open(arguments.tmj);
    DataFile data(records, arguments.command == Command::Clusters ? "clusters" : "cells");
    const Picture drawn = Draw(arguments, data, tiledMap);
    data.Finish();
    WritePng(drawn, *picture);
    for (OutputFile& file : files) {
        file.Close();
    }
    for (OutputFile& file : files) {
        file.PutInPlace();
    }
}

int Run(int argc, char** argv) {
    std::string error;
    const std::optional<Arguments> arguments = ParseArguments(argc, argv, error);
    if (!arguments) {
        return Fail(2, error + " (vesk_atlas --help)");
    }
    switch (arguments->command) {
    case Command::Help:
        return Print(kUsage);
    case Command::Version:
        return Print("vesk_atlas " VESK_VERSION "\n");
    case Command::Tiles:
        WriteTiles(*arguments);
        return 0;
    default:
        WritePicture(*arguments);
        return 0;
    }
}

} // namespace

int main(int argc, char** argv) {
    std::cerr.rdbuf(nullptr); // the generator's lines
    NoteInterrupts();
    try {
        return Run(argc, argv);
    } catch (const Interrupted& interrupted) {
        EndBy(interrupted);
    } catch (const std::bad_alloc&) {
        return Fail(1, "not enough memory");
    } catch (const std::exception& error) {
        return Fail(1, error.what());
    }
}
