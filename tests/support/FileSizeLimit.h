// FileSizeLimit: for the time of a scope no file of this process and its children can grow beyond `bytes`.
#pragma once

#include <sys/resource.h>

#include <csignal>

class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) : disposition(std::signal(SIGXFSZ, SIG_IGN))
    {
        ::getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit{bytes, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, disposition);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    void (*disposition)(int);
    rlimit before{};
};
