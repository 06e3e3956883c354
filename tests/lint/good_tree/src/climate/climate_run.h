#pragma once

#include "reports/report.h"
