#include "session/session.h"

#include <CLI/CLI.hpp>
