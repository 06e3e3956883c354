#include "paint/image_surface.h"

#include <QGuiApplication>
