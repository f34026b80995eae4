// The three kinds of pictures.
#pragma once

#include "atlas/Arguments.h"
#include "atlas/DataFile.h"
#include "atlas/Picture.h"

/// Draws one cell and adds it to the data.
Picture DrawCell(const Arguments& arguments, DataFile& data);

/// Draws a cell and the eight around it, the neighbour graph over them, and adds them to the data
/// row by row from the south.
Picture DrawTour(const Arguments& arguments, DataFile& data);

/// Draws a block of clusters and adds them to the data row by row from the south. Beside the
/// picture it holds no more than the records of one row of clusters.
Picture DrawClusters(const Arguments& arguments, DataFile& data);
