// Writes records as JSON, under the names of their fields.
#pragma once

#include "atlas/OutputFile.h"
#include "atlas/Records.h"

#include <string>

/// One JSON object with one list, one record per line as they are added, so that no more than one
/// is held in memory. Everything in it stands in the records' own order.
class DataFile {
public:
    /// Begins a list of this name. Without a file, which outlives it, nothing is ever written.
    DataFile(OutputFile* theFile, const std::string& list);

    void Add(const Cell& cell);
    /// A cluster with those entries of the neighbour graph that are shown for it.
    void Add(const ClusterRecord& cluster, const CellNeighborMap& neighbors);
    /// Ends the list.
    void Finish();

private:
    void AddLine(const std::string& text);

    OutputFile* file;
    const char* separator = "\n";
};
