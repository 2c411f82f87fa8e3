#include "basics/companion/KvBtSimpleArray.h"

KvBtRealArray::~KvBtRealArray() = default;
KvBtIntegerArray::~KvBtIntegerArray() = default;
