// The headless program of Nivora.

#include "batch/command_line.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    try {
        return nivora::run_command_line(argc, argv, std::cout, std::cerr);
    } catch (const std::exception& error) {
        std::cerr << "Unexpected error: " << error.what() << '\n';
        return 1;
    }
}
