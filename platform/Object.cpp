#include "platform/Object.h"

const CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), nullptr};
