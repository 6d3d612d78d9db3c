#include "operation/Spinner.h"

#include <cstddef>
#include <iterator>

namespace {

constexpr const char* pictures[] = {"-", "\\", "|", "/"};

std::size_t position = 0;

}  // namespace

const char* nextSpinnerPicture()
{
    const char* const picture = pictures[position];
    position = (position + 1) % std::size(pictures);
    return picture;
}
