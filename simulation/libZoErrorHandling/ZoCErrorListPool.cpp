// The records of a pool, and what is read of them by their index.
#include "libZoErrorHandling/ZoCErrorListPool.h"

#include <deque>
#include <stdexcept>

// A deque, because the texts it has given out must stay where they are when errors are appended.
struct ZoCErrorListPool::Records {
    std::deque<ZoSErrorRecord> errors;
};

ZoCErrorListPool::ZoCErrorListPool() = default;

ZoCErrorListPool::~ZoCErrorListPool() = default;

unsigned ZoCErrorListPool::getErrorCount() const noexcept
{
    return records == nullptr ? 0 : static_cast<unsigned>(records->errors.size());
}

const ZoSErrorRecord& ZoCErrorListPool::at(unsigned index) const
{
    if (index >= getErrorCount()) {
        throw std::out_of_range("the pool has no such error");
    }
    return records->errors[index];
}

unsigned ZoCErrorListPool::getOriginNode(unsigned index) const
{
    return at(index).originNode;
}

unsigned ZoCErrorListPool::getErrorCode(unsigned index) const
{
    return at(index).code;
}

unsigned long long ZoCErrorListPool::getTimeStamp(unsigned index) const
{
    return at(index).timeStamp;
}

unsigned ZoCErrorListPool::getMainModuleNumber(unsigned index) const
{
    return at(index).mainModule;
}

unsigned ZoCErrorListPool::getSubModuleNumber(unsigned index) const
{
    return at(index).subModule;
}

const char* ZoCErrorListPool::getFunctionName(unsigned index) const
{
    return at(index).function.c_str();
}

unsigned ZoCErrorListPool::getLineNumber(unsigned index) const
{
    return at(index).line;
}

const char* ZoCErrorListPool::getErrorText(unsigned index) const
{
    return at(index).text.c_str();
}

void ZoCErrorListPool::addError(const ZoSErrorRecord& error)
{
    if (records == nullptr) {
        records = std::make_unique<Records>();
    }
    records->errors.push_back(error);
}

ZoCErrorListPool& ZoCErrorListPool::operator+=(const ZoCErrorListPool& other)
{
    // By number, because `other` may be this pool, which grows meanwhile.
    const unsigned count = other.getErrorCount();
    for (unsigned index = 0; index < count; ++index) {
        addError(other.at(index));
    }
    return *this;
}

void ZoCErrorListPool::clear() noexcept
{
    records.reset();
}
