// JSON documents given as text.
#pragma once

#include <string>

#include "OpenFile.h"
#include "libZoJsonLib/ZoNJson.h"

// A stream with `content`, at its beginning.
inline OpenFile streamOf(const std::string& content)
{
    OpenFile file(std::tmpfile());
    std::fwrite(content.data(), 1, content.size(), file.get());
    std::rewind(file.get());
    return file;
}

inline ZoNJson::json parse(const std::string& content)
{
    return ZoNJson::json::parse(streamOf(content).get());
}
