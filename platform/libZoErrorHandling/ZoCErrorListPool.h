// ZoCErrorListPool: an indexed collection of error records.
//
// Platform operations that can fail take a pool and add what went wrong to it. A caller notices a failure by comparing
// the number of errors before and after the call. A pool keeps all errors it is given, in the order of their arrival.
#pragma once

#include <memory>
#include <string>

// One error as its originator reports it.
struct ZoSErrorRecord {
    unsigned originNode = 0;  // serial number of the reporting node; 0 is the host itself
    unsigned code = 0;        // error code
    unsigned long long timeStamp =
        0;                    // ticks of the originator's clock (see ZoCErrorManager::getTimeStampFactor); 0: none
    unsigned mainModule = 0;  // number of the reporting module; 0: none
    unsigned subModule = 0;
    std::string function;  // reporting function; empty: none
    unsigned line = 0;     // line in that function's source
    std::string text;      // what happened, for a person to read
};

class ZoCErrorListPool {
public:
    virtual ~ZoCErrorListPool();
    ZoCErrorListPool(const ZoCErrorListPool&) = delete;
    ZoCErrorListPool& operator=(const ZoCErrorListPool&) = delete;

    // Number of errors in the pool.
    unsigned getErrorCount() const noexcept;

    // The parts of error `index` (0 to getErrorCount() - 1). Pointers stay valid as long as the pool holds the error.
    unsigned getOriginNode(unsigned index) const;
    unsigned getErrorCode(unsigned index) const;
    unsigned long long getTimeStamp(unsigned index) const;
    unsigned getMainModuleNumber(unsigned index) const;
    unsigned getSubModuleNumber(unsigned index) const;
    const char* getFunctionName(unsigned index) const;  // never null; empty when not known
    unsigned getLineNumber(unsigned index) const;
    const char* getErrorText(unsigned index) const;  // never null

    // Appends `error`.
    void addError(const ZoSErrorRecord& error);

    // Appends copies of all errors of `other`, in their order.
    ZoCErrorListPool& operator+=(const ZoCErrorListPool& other);

    // Removes all errors.
    void clear() noexcept;

protected:
    ZoCErrorListPool();

private:
    struct Records;

    const ZoSErrorRecord& at(unsigned index) const;

    std::unique_ptr<Records> records;  // null as long as there are none: most pools stay empty
};
