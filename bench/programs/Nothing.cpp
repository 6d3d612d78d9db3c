// A C++ program that does nothing: what starting a program takes.
#include <iostream>

int main() {}
