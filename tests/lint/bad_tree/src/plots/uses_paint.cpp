#include "paint/image_surface.h"
