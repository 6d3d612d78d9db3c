#include "support/PseudoTerminal.h"

#include <fcntl.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

PseudoTerminal::PseudoTerminal() : user(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC))
{
    char buffer[64];
    if (user < 0 || ::grantpt(user) != 0 || ::unlockpt(user) != 0 || ::ptsname_r(user, buffer, sizeof buffer) != 0) {
        throw std::system_error(errno, std::generic_category(), "pseudo terminal");
    }
    name = buffer;
    terminal = ::open(buffer, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    if (terminal < 0 || ::tcgetattr(terminal, &settings) != 0) {
        throw std::system_error(errno, std::generic_category(), name);
    }
    ::cfmakeraw(&settings);
    ::tcsetattr(terminal, TCSANOW, &settings);
}

PseudoTerminal::~PseudoTerminal()
{
    ::close(terminal);
    ::close(user);
}

std::string PseudoTerminal::shown() const
{
    std::string text;
    char buffer[4096];
    for (ssize_t count = ::read(user, buffer, sizeof buffer); count > 0; count = ::read(user, buffer, sizeof buffer)) {
        text.append(buffer, static_cast<std::size_t>(count));
    }
    return text;
}
