#include "batch/interruption.h"

#include <csignal>

namespace nivora {
namespace {

// A signal handler may write to such a variable and to little else.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
volatile std::sig_atomic_t g_asked = 0;

extern "C" void ask_to_stop(int signal) {
    g_asked = 1;
    std::signal(signal, SIG_DFL);
}

}  // namespace

Interruption::Interruption() {
    g_asked = 0;
    std::signal(SIGINT, ask_to_stop);
    std::signal(SIGTERM, ask_to_stop);
}

Interruption::~Interruption() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
}

bool Interruption::asked() const { return g_asked != 0; }

}  // namespace nivora
