// Runs a shell command as a person at the terminal would, for the tests of whole programs.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

struct Outcome {
    int status = -1;
    std::string out; // what the command printed, in the order it printed it
};

// The command's output and exit status; status -1 when it could not run or was killed.
inline Outcome runCommand(const std::string& command) {
    Outcome run;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    std::array<char, 4096> buffer;
    std::size_t n;
    while ((n = fread(buffer.data(), 1, buffer.size(), pipe)) > 0)
        run.out.append(buffer.data(), n);
    const int status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}
