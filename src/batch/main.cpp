// The headless program of Nivora.

#include "batch/command_line.h"

#include <exception>
#include <iostream>

int main(int argc, char** argv) {
    try {
        const int status = nivora::run_command_line(argc, argv, std::cout, std::cerr);
        std::cout.flush();
        if (std::cout) return status;
        std::cerr << "The output can't be written; the disk may be full.\n";
        return status == 0 ? 1 : status;
    } catch (const std::exception& error) {
        std::cerr << "Unexpected error: " << error.what() << '\n';
        return 1;
    }
}
