#include "support/precompiled.hpp"
