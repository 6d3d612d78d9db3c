// Preloaded into a program, it lets it have no further thread.
#include <errno.h>
#include <pthread.h>

extern "C" int pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*) noexcept
{
    return EAGAIN;
}
