// Unprivileged: gives up root's right to read every file, for the time of a scope. Does nothing for another user.
#pragma once

#include <unistd.h>

#include <exception>
#include <filesystem>
#include <stdexcept>
#include <string>

class Unprivileged {
public:
    Unprivileged() : wasRoot(::getuid() == 0)
    {
        if (wasRoot && ::setresuid(nobody, nobody, 0) != 0) {
            throw std::runtime_error("cannot give up root's rights");
        }
    }
    ~Unprivileged()
    {
        if (wasRoot && ::setresuid(0, 0, 0) != 0) {
            std::terminate();
        }
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    static constexpr uid_t nobody = 65534;
    bool wasRoot;
};

// Lets everybody read what is in `folder`, but nobody except root its file `name`.
inline void makeUnreadable(const std::filesystem::path& folder, const std::string& name)
{
    using std::filesystem::perms;
    const perms everybody = perms::group_read | perms::group_exec | perms::others_read | perms::others_exec;
    std::filesystem::permissions(folder, perms::owner_all | everybody);
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        std::filesystem::permissions(file.path(), perms::owner_all | everybody);
    }
    std::filesystem::permissions(folder / name, perms::none);
}
