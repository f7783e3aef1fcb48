#pragma once

#include "common/boundary.h"
