#pragma GCC system_header
#include_next <sys/stat.h>
#include <tests/windows/posix/elsewhere.h>
