// PseudoTerminal: a terminal whose user is the test.
#pragma once

#include <string>

class PseudoTerminal {
public:
    // Throws std::system_error where there is none to be had. What is printed on it arrives as it is, line ends too.
    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    // The side that a program prints on: as a descriptor, which lives as long as this, and as a file.
    int descriptor() const { return terminal; }
    const std::string& path() const { return name; }

    // What has been printed since the last call; at most a few thousand bytes are kept for it.
    std::string shown() const;

private:
    int user = -1;
    int terminal = -1;
    std::string name;
};
