// Maps for Tiled, the map editor.
#pragma once

#include "atlas/OutputFile.h"
#include "atlas/Records.h"

/// Writes a cell as a map of 512 x 512 tiles, as large as in the game, with the main rooms,
/// hallways, markers and enemies as layers of objects. A cell without land has empty layers.
void WriteTiledMap(const Cell& cell, OutputFile& file);
