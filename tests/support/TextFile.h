// Whole text files.
#pragma once

#include <filesystem>
#include <string>

// The file's bytes. Throws std::runtime_error when it cannot be read.
std::string readText(const std::filesystem::path& file);

// Replaces the file's content. Throws std::runtime_error when it cannot be written.
void writeText(const std::filesystem::path& file, const std::string& text);
