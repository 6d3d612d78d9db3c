#include "support/MessageCapture.h"

#include <numeric>

namespace {

// A callback has no argument of its own to say whose text it is.
std::vector<std::string>& taken()
{
    static std::vector<std::string> fragments;
    return fragments;
}

void take(const std::string& fragment)
{
    taken().push_back(fragment);
}

}  // namespace

MessageCapture::MessageCapture(ZoITrellanUpdater& updater) : updater(updater)
{
    taken().clear();
    updater.setMessageCallBack(take);
}

MessageCapture::~MessageCapture()
{
    updater.setMessageCallBack(nullptr);
}

const std::vector<std::string>& MessageCapture::fragments() const
{
    return taken();
}

std::string MessageCapture::text() const
{
    return std::accumulate(taken().begin(), taken().end(), std::string());
}

void MessageCapture::clear()
{
    taken().clear();
}
