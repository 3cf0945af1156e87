// Stands in for qpdf's own header where clang reads our files: that one has a vector of a class that is
// not complete yet, which g++ takes and clang does not. Nothing of ours uses JSON.
#pragma once
#include <qpdf/DLL.h>
#include <qpdf/PointerHolder.hh>
#include <qpdf/Types.h>

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

class Pipeline;
class InputSource;
class JSON;
