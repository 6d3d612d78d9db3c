#include <csignal>
#include <iostream>

#include "tool/Run.h"

int main(int argc, char** argv)
{
    // A reader that goes away, as in "| head", must not end an update in the middle.
    std::signal(SIGPIPE, SIG_IGN);
    return TrellanTool::run(argc, argv, std::cout, std::cerr);
}
