// Writes records as JSON, under the names of their fields.
#pragma once

#include "atlas/Records.h"

#include <fstream>
#include <string>

/// One JSON object with one list, one record per line as they are added, so that no more than one
/// is held in memory. Everything in it stands in the records' own order.
class DataFile {
public:
    /// Opens the file for a list of this name. Without a file name nothing is ever written.
    DataFile(const std::string& file, const std::string& list);

    void Add(const Cell& cell);
    /// A cluster with those entries of the neighbour graph that are shown for it.
    void Add(const ClusterRecord& cluster, const CellNeighborMap& neighbors);
    /// Ends the list. False when anything could not be written.
    bool Finish();

private:
    void AddLine(const std::string& text);

    std::ofstream out;
    const char* separator = "\n";
};
