#pragma once
#include <tests/windows/posix/elsewhere.h>
