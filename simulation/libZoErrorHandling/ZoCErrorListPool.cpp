// The records of a pool, and what is read of them by their index.
#include "libZoErrorHandling/ZoCErrorListPool.h"

#include <deque>

// A deque, because the texts it has given out must stay where they are when errors are appended.
struct ZoCErrorListPool::Records {
    std::deque<ZoSErrorRecord> errors;
};

ZoCErrorListPool::ZoCErrorListPool() : records(std::make_unique<Records>()) {}

ZoCErrorListPool::~ZoCErrorListPool() = default;

unsigned ZoCErrorListPool::getErrorCount() const noexcept
{
    return static_cast<unsigned>(records->errors.size());
}

unsigned ZoCErrorListPool::getOriginNode(unsigned index) const
{
    return records->errors.at(index).originNode;
}

unsigned ZoCErrorListPool::getErrorCode(unsigned index) const
{
    return records->errors.at(index).code;
}

unsigned long long ZoCErrorListPool::getTimeStamp(unsigned index) const
{
    return records->errors.at(index).timeStamp;
}

unsigned ZoCErrorListPool::getMainModuleNumber(unsigned index) const
{
    return records->errors.at(index).mainModule;
}

unsigned ZoCErrorListPool::getSubModuleNumber(unsigned index) const
{
    return records->errors.at(index).subModule;
}

const char* ZoCErrorListPool::getFunctionName(unsigned index) const
{
    return records->errors.at(index).function.c_str();
}

unsigned ZoCErrorListPool::getLineNumber(unsigned index) const
{
    return records->errors.at(index).line;
}

const char* ZoCErrorListPool::getErrorText(unsigned index) const
{
    return records->errors.at(index).text.c_str();
}

void ZoCErrorListPool::addError(const ZoSErrorRecord& error)
{
    records->errors.push_back(error);
}

ZoCErrorListPool& ZoCErrorListPool::operator+=(const ZoCErrorListPool& other)
{
    // By number, because `other` may be this pool, which grows meanwhile.
    const std::size_t count = other.records->errors.size();
    for (std::size_t index = 0; index < count; ++index) {
        addError(other.records->errors[index]);
    }
    return *this;
}

void ZoCErrorListPool::clear() noexcept
{
    records->errors.clear();
}
