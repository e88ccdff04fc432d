#include "Tools/Commands/CommandLine/CommandLine.h"

#include <algorithm>
#include <csignal>
#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    // A reader that goes away is an error of writing, not the end of the program.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        quen::tools::CommandLine line;
        addAllCommands(line);
        return line.run({argv + std::min(argc, 1), argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "quen: " << error.what() << '\n';
        return quen::tools::ExitFailure;
    }
}
