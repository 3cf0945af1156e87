#pragma GCC system_header
#include <tests/windows/posix/elsewhere.h>
#include_next <unistd.h>
