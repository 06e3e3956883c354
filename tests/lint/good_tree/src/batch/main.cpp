#include "paint/image_surface.h"
#include "session/session.h"

#include <CLI/CLI.hpp>

#include <QGuiApplication>
