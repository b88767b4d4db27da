#pragma once

#include <string>

/// Writes with everything that must be ready before main() and still be so after it: the static
/// constructor registers a file log of its own name in the folder given by LOG_LIFE_FOLDER,
/// then writes through defLog; the destructor writes again.
class EarlyUser
{
public:
    explicit EarlyUser(std::string name);
    EarlyUser(const EarlyUser&) = delete;
    EarlyUser& operator=(const EarlyUser&) = delete;
    ~EarlyUser();

private:
    std::string name;
};

/// The folder for the files of this run.
std::string lifeFolder();
