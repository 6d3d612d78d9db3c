#include <iostream>

#include "tool/Run.h"

int main(int argc, char** argv)
{
    return TrellanTool::run(argc, argv, std::cout, std::cerr);
}
