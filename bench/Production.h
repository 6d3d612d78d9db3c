// Inputs like those that archives and targets are in the field, in any size.
#pragma once

#include <filesystem>

#include "Inputs.h"

// Boards of 40 types with eight elements each, or with fewer: one, two or four. Of the entries one of five has board
// objects, one of fifty is for a file on the flash drive; variants, types and ids stand in arrays. The entry with a
// number fits the element with this number and no other, and one element of four has its content already.
inline constexpr unsigned mostElementsOfBoard = 8;

Case production(unsigned elementsOfBoard = mostElementsOfBoard);

// The same without files on the flash drive; entries for one board type share an image, and nothing is up to date.
Case productionOfDevice();

// A folder with archive.json and target.json, which have as many entries and elements. Written at the first call for
// this size, and removed at the end of the program.
const std::filesystem::path& productionFolder(unsigned count, unsigned elementsOfBoard = mostElementsOfBoard);

// The same for productionOfDevice(), with the images.
const std::filesystem::path& productionOfDeviceFolder(unsigned count);
