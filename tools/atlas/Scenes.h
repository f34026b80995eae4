// What the commands draw.
#pragma once

#include "atlas/Arguments.h"
#include "atlas/DataFile.h"
#include "atlas/Picture.h"

/// Draws one cell, adds it to the data and writes its map unless that is null.
Picture DrawCell(const Arguments& arguments, DataFile& data, OutputFile* tiledMap);

/// Draws a cell and the eight around it, the neighbour graph over them, and adds those in the
/// world to the data, row by row from the south.
Picture DrawTour(const Arguments& arguments, DataFile& data);

/// Draws a block of clusters and adds them to the data row by row from the south. Beside the
/// picture it holds no more than the records of one row of clusters.
Picture DrawClusters(const Arguments& arguments, DataFile& data);

/// Writes the pictures of a block of clusters that fit together, those of each zoom in
/// zoom/column/row.png.
void WriteTiles(const Arguments& arguments);
