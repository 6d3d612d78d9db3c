#include "libZoErrorHandling/ZoCErrorList.h"

ZoCErrorList::ZoCErrorList() = default;

ZoCErrorList::~ZoCErrorList() = default;
